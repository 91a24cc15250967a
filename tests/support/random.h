#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace quill::tests {

/// Random numbers that are the same on each machine (SplitMix64).
class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t n = state_ += 0x9E3779B97F4A7C15U;
        n = (n ^ n >> 30U) * 0xBF58476D1CE4E5B9U;
        n = (n ^ n >> 27U) * 0x94D049BB133111EBU;
        return n ^ n >> 31U;
    }

    /// Returns a number from 0 to `count` - 1; 0 if `count` is 0.
    std::size_t below(std::size_t count) { return count == 0 ? 0 : static_cast<std::size_t>(next() % count); }

    /// Returns true once in `times`.
    bool once_in(std::size_t times) { return below(times) == 0; }

    template <class Table>
    const auto& of(const Table& table) {
        return table[below(std::size(table))];
    }

  private:
    std::uint64_t state_;
};

}  // namespace quill::tests
