#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

namespace quill::text {

/// Returns true if `bytes` contain a line feed and no carriage return at all. Such text is read as though each LF were
/// CR LF.
bool is_unix_text(std::string_view bytes);

/// Is called periodically in a long search with the current byte offset in the text.
using OnSearched = std::function<void(std::size_t offset)>;

/// A text to read, and what its reader should know. Does not own the bytes.
struct Source {
    template <class Text>
    requires std::convertible_to<const Text&, std::string_view> Source(const Text& text)
        : bytes(text), unix_text(is_unix_text(bytes)) {}

    /// Makes a source for a caller that already knows whether `text` is, or is a part of, Unix text.
    Source(std::string_view text, bool is_unix, OnSearched searched = {})
        : bytes(text), unix_text(is_unix), on_searched(std::move(searched)) {}

    std::string_view bytes;
    bool unix_text;
    OnSearched on_searched;  ///< may be empty; lets the owner of a large text release what was searched
};

/// Reads 8-bit text by lines or by fields; the two may be mixed, and give different results on the same text.
///
/// A line ends at CR or CR LF. A lone LF is an ordinary character, unless the text is Unix text as a whole. The
/// returned views point into the given bytes, which must outlive the reader.
class Reader {
  public:
    explicit Reader(Source source)
        : bytes_(source.bytes), line_feed_ends_(source.unix_text), on_searched_(std::move(source.on_searched)) {}
    Reader(std::string_view bytes, bool unix_text) : Reader(Source(bytes, unix_text)) {}

    /// Returns the characters up to the next line end, without it; nullopt at the end of the text.
    std::optional<std::string_view> line();

    /// Skips blanks and tabs, then returns the characters up to the next comma or line end, without it; nullopt at the
    /// end of the text. A field that begins with a double quote runs to the closing quote, even across line ends; the
    /// quotes are dropped, and anything between the closing one and the next delimiter is ignored. An empty line gives
    /// an empty field.
    std::optional<std::string_view> field();

    bool at_end() const { return at_ == bytes_.size(); }

    /// Returns the position of the next read: bytes from the beginning of the text.
    std::size_t offset() const { return at_; }

    /// Returns true if a line ends at LF here.
    bool reads_unix_text() const { return line_feed_ends_; }

  private:
    std::size_t find(char c, std::size_t from, std::size_t to) const;
    std::size_t find_line_end(std::size_t from);
    std::size_t find_delimiter(std::size_t from);
    void pass_delimiter(std::size_t at);

    std::string_view bytes_;
    std::size_t at_ = 0;
    std::size_t line_known_to_ = 0;  ///< one past the line end found last: each line is searched for its end only once
    bool line_feed_ends_;
    OnSearched on_searched_;
};

}  // namespace quill::text
