#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace quill::text {

/// Whether `bytes` hold a line feed and no carriage return at all. Such text is read as though each LF were CR LF.
bool is_unix_text(std::string_view bytes);

/// Reads 8-bit text by lines or by fields; the two may be mixed, and give different results on the same text.
///
/// A line ends at CR or CR LF. A lone LF is a character like any other, unless the text is Unix text as a whole.
/// The views returned point into the bytes given, which must outlive the reader.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : Reader(bytes, is_unix_text(bytes)) {}

    /// For a caller that knows already whether `bytes` are, or are a part of, Unix text.
    Reader(std::string_view bytes, bool unix_text) : bytes_(bytes), line_feed_ends_(unix_text) {}

    /// The characters up to the next line end, without it; nullopt when all is read.
    std::optional<std::string_view> line();

    /// Skips blanks and tabs, then the characters up to the next comma or line end, without it; nullopt when all is
    /// read. A field that begins with a double quote runs to the closing quote, over line ends too; the quotes are
    /// dropped, and what stands behind the closing one up to the next delimiter is passed over. An empty line gives an
    /// empty field.
    std::optional<std::string_view> field();

    bool at_end() const { return at_ == bytes_.size(); }

    /// Where the next read begins: bytes from the beginning of the text.
    std::size_t offset() const { return at_; }

    /// Whether a line ends at LF here.
    bool reads_unix_text() const { return line_feed_ends_; }

  private:
    std::size_t find_line_end(std::size_t from);
    std::size_t find_delimiter(std::size_t from);
    void pass_delimiter(std::size_t at);

    std::string_view bytes_;
    std::size_t at_ = 0;
    std::size_t line_known_to_ = 0;  ///< one behind the line end found last: each line is searched for its end once
    bool line_feed_ends_;
};

}  // namespace quill::text
