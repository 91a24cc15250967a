#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quill::codec::quoted_printable {

/// A doubt about a line.
enum class Doubt : unsigned char {
    none,
    bad_character,  ///< a NUL, which has to be escaped; it is kept
    bad_escape      ///< a '=' that neither two hexadecimal digits nor the line's end follow; it is kept as it stands
};

/// Decodes one line (RFC 2045 6.7), given with its line end, and appends it to `out`: "=41" becomes "A", blanks at the
/// line's end vanish, and a '=' there joins the next line. Keeps the line end itself.
Doubt decode_line(std::string_view line, std::string& out);

/// The longest row that encoders write, without its line end (RFC 2045 6.7, rule 5).
constexpr std::size_t longest_row = 76;

/// Returns `line` without its line end, and without blanks before that.
std::string_view row_of(std::string_view line);

/// Watches whether rows are as one encoder writes them: it breaks all rows that are too long, and continues a row that
/// it broke with characters.
class Rows {
  public:
    /// Takes a line with its line end.
    void take(std::string_view line);

    std::uint64_t count() const { return rows_; }

    /// Returns true where rows are broken, and yet one is too long or an empty one continues another.
    bool uneven() const { return (soft_breaks_ && too_long_) || empty_after_break_; }

    /// Returns true where the last row goes on, and nothing follows. The line end behind a soft break may be all that
    /// the row goes on with.
    bool goes_on(bool with_line_end) const { return open_ && (with_line_end || !line_end_); }

  private:
    std::uint64_t rows_ = 0;
    bool open_ = false;      ///< the last row ends in a soft break
    bool line_end_ = false;  ///< the last row has a line end
    bool skipped_ = false;   ///< an empty row follows a soft break
    bool soft_breaks_ = false;
    bool too_long_ = false;
    bool empty_after_break_ = false;
};

}  // namespace quill::codec::quoted_printable
