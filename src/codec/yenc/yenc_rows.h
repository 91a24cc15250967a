#pragma once

#include "codec/yenc/yenc_post.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quill::codec::yenc {

/// Returns true if characters were lost or added: some line except the last has a different length. Encoders break a
/// line once it has as many characters, or as many bytes, as `=ybegin` states; if the first line has another length,
/// that one counts.
bool has_uneven_rows(std::string_view text, const Post& post);

/// Returns true if blanks seem to have become tabs: the data have several tabs and nearly every other character, but no
/// blank. Data with fewer different characters may lack the blank by chance.
bool has_tabs_for_blanks(std::string_view text, const Post& post);

/// Watches the rows of yEnc text while it is read, for the usual case that all of them have the stated characters.
class RowWatch {
  public:
    explicit RowWatch(const Post& post) : length_(post.begin.line.value_or(0)) {}

    void take(std::string_view piece);
    /// Gives up, because some of the text is left out.
    void skip() { even_ = false; }
    /// Returns true if the rows are even; if it returns false, `has_uneven_rows` must check.
    bool saw_even_rows() const;

  private:
    std::optional<std::size_t> begin(std::string_view piece);

    std::uint64_t length_;  ///< characters of a row
    bool begun_ = false;
    bool even_ = true;
    std::string rest_;  ///< of the last piece: its last rows, without a line end before them
};

}  // namespace quill::codec::yenc
