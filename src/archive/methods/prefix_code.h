#pragma once

#include "archive/methods/bit_reader.h"

#include <cstdint>
#include <span>
#include <vector>

namespace quill::archive {

/// A prefix code whose codes have up to 16 bits, decoded with one look-up.
class PrefixCode {
  public:
    static constexpr unsigned most_bits = 16;

    /// Builds the code of RFC 1951 3.2.2: `lengths[s]` is the number of bits of symbol s, 0 if it has no code. Returns
    /// false if there are more codes than fit. Codes may be left over.
    bool build(std::span<const std::uint8_t> lengths);

    /// Builds the code of APPNOTE 5.3.7 in the same way. It is assigned backwards from the last of the longest codes.
    bool build_imploded(std::span<const std::uint8_t> lengths);

    /// Reads one code from `bits` and returns its symbol, or a negative number if no code has these bits.
    int read(BitReader& bits) const {
        const Entry entry = table_[bits.peek(static_cast<int>(longest_))];
        bits.drop(entry.bits);
        return entry.symbol;
    }

  private:
    struct Entry {
        std::int16_t symbol = -1;
        std::uint8_t bits = 0;
    };

    void begin(std::span<const std::uint8_t> lengths);
    bool add(std::size_t symbol, std::uint32_t code, unsigned bits);

    std::vector<Entry> table_{1};
    unsigned longest_ = 0;
};

}  // namespace quill::archive
