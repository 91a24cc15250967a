#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quill::codec {

/// Checks whether the rows of a Base64 body have the same length, as encoders write them: lost or added characters
/// change the length of a row.
class Base64Rows {
  public:
    /// Reads the next bytes of the body, which contain `characters` of the alphabet and otherwise only blanks and line
    /// ends. They may end within a row.
    void take(std::string_view bytes, std::uint64_t characters);

    /// Ends the current row, which padding follows; it may have any length.
    void end_padded();

    /// Ends the last row, which may lack a line end.
    void end() { end_row(); }

    /// Forgets the row that was begun and the one before it, where another part or other text begins.
    void begin_part() { row_ = before_ = 0, in_odd_rows_ = 0; }

    /// Returns the number of full rows.
    std::uint64_t usual_rows() const { return usual_rows_; }

    /// Returns true where a row in the middle is shorter or longer than the others. Text that was broken again is fine:
    /// it has rows of two lengths in turn, or all characters of some full rows in rows of other lengths. The second of
    /// only two rows may not be the longer one. Call after `end`.
    bool uneven() const;

    /// Returns the characters of the first row; 0 before it.
    std::size_t width() const { return width_; }

  private:
    std::uint64_t take_rows(std::string_view bytes, bool by_stride);
    std::uint64_t take_to_line_end(std::string_view bytes);
    void end_row();
    void end_odd_rows();

    std::size_t row_ = 0;     ///< characters of the current row so far
    std::size_t before_ = 0;  ///< of the last row
    std::size_t width_ = 0;   ///< of the first row
    std::size_t odd_ = 0;     ///< of the first row in the middle of another length
    std::uint64_t usual_rows_ = 0;
    std::uint64_t odd_rows_ = 0;
    std::uint64_t in_odd_rows_ = 0;  ///< characters of the rows since the last usual one, without the last row
    bool third_length_ = false;
    bool lost_ = false;  ///< odd rows between usual ones do not make whole rows
};

}  // namespace quill::codec
