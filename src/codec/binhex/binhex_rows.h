#pragma once

#include <cstdint>
#include <string_view>

namespace quill::codec::binhex {

/// Watches whether characters are lost between the rows of a body. Encoders break after each 64 characters, the opening
/// colon counted; text that was broken again has all of them in other rows. So what is between two full rows is a
/// multiple of 64, whatever its rows. Checksums cannot show this among zeros.
class Rows {
  public:
    /// Takes the next bytes of the body, which hold only characters of the alphabet, blanks and line ends.
    void take(std::string_view bytes);

    /// Returns true where characters were lost, or came in.
    bool uneven() const { return uneven_; }

    /// Returns the number of full rows.
    std::uint64_t full_rows() const { return full_rows_; }

  private:
    void end_row();

    std::uint64_t row_ = 1;     ///< characters of the row that was begun; the first has the colon
    std::uint64_t before_ = 0;  ///< characters before it, modulo 64
    std::uint64_t phase_ = 0;   ///< `before_` at the first full row
    std::uint64_t full_rows_ = 0;
    bool uneven_ = false;
};

}  // namespace quill::codec::binhex
