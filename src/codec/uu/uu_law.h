#pragma once

#include "codec/uu/uu_line.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quill::codec::uu {

/// Rows of one make: how many there are, and where the first is in the input.
struct Tally {
    std::uint64_t rows = 0;
    std::uint64_t first = 0;

    void add(std::uint64_t at, std::uint64_t more = 1) {
        if (rows == 0) first = at;
        rows += more;
    }
};

/// The law of a body, measured while its rows go by: one encoder writes all rows alike. All but the last hold the same
/// number of bytes; zeros are written in one way, and kept at the ends of rows or lost there; all rows or none end in a
/// check character (the sum of the row's values modulo 64) or another surplus that never changes.
class Law {
  public:
    explicit Law(Alphabet alphabet) : alphabet_(alphabet) {}

    /// Forgets how long rows are, where another part begins.
    void begin_part() { width_ = 0, odd_ = false; }

    /// Takes a row at `at` that holds `bytes`, and nothing but blanks after them. `row` begins with the length
    /// character.
    void take_exact(std::string_view row, std::size_t bytes, std::uint64_t at, bool blanks_after = false);

    /// Returns true where more rows of `bytes` change nothing but their number, which `take_more` counts.
    bool are_settled(std::size_t bytes) const { return bytes == width_ && !odd_ && !has_checks(); }
    void take_more(std::uint64_t rows, std::uint64_t at);

    /// Takes a row with characters after its data.
    void take_longer(std::string_view row, const DataLine& data, std::uint64_t at);

    /// Takes a row whose end is missing, as though blanks were lost there.
    void take_stripped(std::uint64_t at) { stripped_.add(at); }

    /// Looks at how zeros are written in `rows`, which are at `at`: a sample of a long text.
    void take_zeros(std::string_view rows, std::uint64_t at);

    /// Notes that blanks at the ends of rows are not lost, or none were written.
    void keep_blanks() { keeps_blanks_ = true; }
    bool keeps_blanks() const { return keeps_blanks_; }

    /// Returns true where a row is longer than the first, or follows one that is shorter, as only the last may be.
    bool uneven() const { return uneven_; }

    /// Returns where a row has another surplus than the others, or a check character that disagrees.
    std::optional<std::uint64_t> wrong_check() const;

    /// Returns where a row is too short in a body that loses no blanks.
    std::optional<std::uint64_t> wrongly_stripped() const;

    /// Returns true where zeros within the data are written as blanks.
    bool writes_blanks() const { return blanks_.rows > 0; }

    /// Returns where zeros within the data are written in a second way: a character took the place of another.
    std::optional<std::uint64_t> mixed_zeros() const;

    /// Bytes of the first row; 0 before it.
    std::size_t width() const { return width_; }

    /// Returns true where a row of `bytes` can follow: as long as the others (as encoders write full rows, where there
    /// are none yet), or, as the last, shorter.
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
    Tally right_;          ///< rows with a check character that agrees
    Tally wrong_;          ///< rows with another surplus
    Tally changed_;        ///< rows with a surplus that the first has not
    Tally plain_;          ///< rows without one
    Tally padded_;         ///< rows with blanks after the data
    Tally zero_;           ///< rows without one whose check character would be a zero, which may be a lost blank
    Tally stripped_;
    Tally graves_;  ///< samples with a '`' within the data
    Tally blanks_;  ///< samples with a blank within the data
};

}  // namespace quill::codec::uu
