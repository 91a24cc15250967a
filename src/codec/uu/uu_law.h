#pragma once

#include "codec/uu/uu_line.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quill::codec::uu {

/// Rows of one kind: their number, and the place of the first in the input.
struct Tally {
    std::uint64_t rows = 0;
    std::uint64_t first = 0;

    void add(std::uint64_t at, std::uint64_t more = 1) {
        if (rows == 0) first = at;
        rows += more;
    }
};

/// The regularities of a body, measured while its rows are read: one encoder writes all rows alike. All but the last
/// have the same number of bytes; zeros are written in one way, and kept at the ends of rows or lost there; all rows or
/// none end in a check character (the sum of the row's values modulo 64) or in another constant surplus.
class Law {
  public:
    explicit Law(Alphabet alphabet) : alphabet_(alphabet) {}

    /// Forgets the length of rows, because another part begins.
    void begin_part() { width_ = 0, odd_ = false; }

    /// Adds a row at `at` with `bytes` bytes and at most blanks after them. `row` begins with the length character.
    void take_exact(std::string_view row, std::size_t bytes, std::uint64_t at, bool blanks_after = false);

    /// Returns true if more rows of `bytes` change only their number, which `take_more` counts.
    bool are_settled(std::size_t bytes) const { return bytes == width_ && !odd_ && !has_checks(); }
    void take_more(std::uint64_t rows, std::uint64_t at);

    /// Adds a row with characters after its data.
    void take_longer(std::string_view row, const DataLine& data, std::uint64_t at);

    /// Adds a row without its end, as though blanks were lost there.
    void take_stripped(std::uint64_t at) { stripped_.add(at); }

    /// Checks how zeros are written in `rows`, which are at `at`: a sample of a long text.
    void take_zeros(std::string_view rows, std::uint64_t at);

    /// Records that blanks at the ends of rows are not lost, or none were written.
    void keep_blanks() { keeps_blanks_ = true; }
    bool keeps_blanks() const { return keeps_blanks_; }

    /// Returns true where a row is longer than the first, or follows one that is shorter, as only the last may be.
    bool uneven() const { return uneven_; }

    /// Returns the place of a row with a different surplus, or with a wrong check character.
    std::optional<std::uint64_t> wrong_check() const;

    /// Returns the place of a row that is too short in a body that loses no blanks.
    std::optional<std::uint64_t> wrongly_stripped() const;

    /// Returns true if zeros within the data are written as blanks.
    bool writes_blanks() const { return blanks_.rows > 0; }

    /// Returns the place where zeros within the data are written in a second way: one character replaced another.
    std::optional<std::uint64_t> mixed_zeros() const;

    /// Returns the bytes of the first row; 0 before it.
    std::size_t width() const { return width_; }

    /// Returns true if a row of `bytes` can follow: as long as the others (the usual full length if there are none
    /// yet), or, as the last, shorter.
    bool allow(std::size_t bytes, bool last) const;

    bool has_checks() const { return right_.rows + wrong_.rows > 0; }

  private:
    unsigned sum_of(std::string_view row, std::size_t bytes) const;
    void take_width(std::size_t bytes);

    Alphabet alphabet_;
    std::size_t width_ = 0;
    bool odd_ = false;
    bool uneven_ = false;
    bool last_is_plain_ = false;
    bool keeps_blanks_ = false;
    std::string surplus_;  ///< of the first row that has one
    Tally right_;          ///< rows with a correct check character
    Tally wrong_;          ///< rows with another surplus
    Tally changed_;        ///< rows whose surplus differs from the first
    Tally plain_;          ///< rows without one
    Tally padded_;         ///< rows with blanks after the data
    Tally zero_;           ///< rows without a check character whose value would be zero, which may be a lost blank
    Tally stripped_;
    Tally graves_;  ///< samples with a '`' within the data
    Tally blanks_;  ///< samples with a blank within the data
};

}  // namespace quill::codec::uu
