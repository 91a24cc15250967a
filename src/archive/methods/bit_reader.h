#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quill::archive {

/// The bits of a stream, the least significant of each byte first. Bits past the end of the input read as zeros;
/// `overrun` reports that some were used.
class BitReader {
  public:
    /// The bits available after `fill`, as long as there is input.
    static constexpr int after_fill = 57;

    /// Moves bytes from the front of `in` into the buffer while there is room.
    void fill(std::string_view& in) {
        while (count_ < after_fill && !in.empty()) {
            bits_ |= std::uint64_t{static_cast<unsigned char>(in.front())} << count_;
            count_ += 8;
            in.remove_prefix(1);
        }
    }

    /// Returns the next `n` bits, at most 32, the first one lowest.
    std::uint32_t peek(int n) const { return static_cast<std::uint32_t>(bits_ & ((std::uint64_t{1} << n) - 1)); }

    void drop(int n) {
        bits_ >>= n;
        count_ -= n;
    }

    std::uint32_t take(int n) {
        const std::uint32_t value = peek(n);
        drop(n);
        return value;
    }

    /// Drops the rest of a partly used byte.
    void align() {
        if (count_ > 0) drop(count_ % 8);
    }

    bool overrun() const { return count_ < 0; }

    /// Drops the unused whole bytes filled in last, at most `most`; returns their number.
    std::size_t give_back(std::size_t most) {
        const std::size_t bytes = std::min(static_cast<std::size_t>(count_ / 8), most);
        count_ -= static_cast<int>(8 * bytes);
        bits_ = bits_ & ((std::uint64_t{1} << count_) - 1);
        return bytes;
    }

  private:
    std::uint64_t bits_ = 0;
    int count_ = 0;  // below 0 after an overrun
};

}  // namespace quill::archive
