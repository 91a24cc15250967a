#pragma once

#include "codec/uu/uu_line.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quill::codec::uu {

/// Watches whether the lines of a file are as one encoder writes them: all but the last hold the same number of bytes,
/// and all or none end in a check character, the sum of the line's values modulo 64.
class Rows {
  public:
    explicit Rows(Alphabet alphabet) : alphabet_(alphabet) {}

    /// Forgets how long lines are, where another part begins.
    void begin_part() { width_ = 0, odd_ = false; }

    /// Takes a line that holds `data` and nothing after it. `line` begins with the length character.
    void take_exact(std::string_view line, std::size_t bytes);

    /// Returns true where more lines of `bytes` change nothing but their number, which `take_more` counts.
    bool are_settled(std::size_t bytes) const { return bytes == width_ && !odd_ && !has_checks(); }
    void take_more(std::uint64_t lines);

    /// Takes a line with characters after its data.
    void take_longer(std::string_view line, const DataLine& data);

    /// Returns true where a line follows one that is shorter or longer than the others, as only the last may be.
    bool uneven() const { return uneven_; }

    /// Returns true where some line has no check character, or a wrong one, and the others have the right one; or
    /// where only some lines hold more than their data.
    bool checks_disagree() const;

    /// Bytes of the first line; 0 before it.
    std::size_t width() const { return width_; }

    /// Returns true where a line of `bytes` can follow: as long as the others (as encoders write full lines, where
    /// there are none yet), or, as the last, shorter.
    bool allow(std::size_t bytes, bool last) const;

    bool has_checks() const { return right_ + wrong_ > 0; }

  private:
    unsigned sum_of(std::string_view line, std::size_t bytes) const;
    void take_width(std::size_t bytes);

    Alphabet alphabet_;
    std::size_t width_ = 0;
    bool odd_ = false;
    bool uneven_ = false;
    bool last_is_plain_ = false;
    std::uint64_t right_ = 0;  ///< check characters
    std::uint64_t wrong_ = 0;  ///< and other characters after the data
    std::uint64_t none_ = 0;   ///< lines without a check character that cannot be a lost blank
};

}  // namespace quill::codec::uu
