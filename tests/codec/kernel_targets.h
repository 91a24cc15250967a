#pragma once

#include "simd/simd_dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <string_view>

/// Common parts of the kernels' property tests.
namespace quill::codec::test {

/// Every length up to four of the longest vectors.
constexpr std::size_t most_bytes = 4 * 64;

/// Runs `check` with each of the kernels' targets that this processor has.
template <class Check>
void on_each_target(Check check) {
    const simd::Target usual = simd::chosen_target();
    for (const simd::Target target : simd::available_targets()) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, std::string(simd::name_of(target)));
        simd::choose_target(target);
        check();
    }
    simd::choose_target(usual);
}

/// `size` bytes that begin `offset` bytes after an aligned address and end where their heap block ends, so that the
/// sanitizers detect the first byte read or written after them.
class ExactBytes {
  public:
    ExactBytes(std::size_t size, std::size_t offset) : block_(new char[offset + size]), offset_(offset), size_(size) {}
    ExactBytes(std::string_view content, std::size_t offset) : ExactBytes(content.size(), offset) {
        std::copy(content.begin(), content.end(), data());
    }

    char* data() { return block_.get() + offset_; }
    std::string_view view() const { return {block_.get() + offset_, size_}; }
    std::string_view view(std::size_t n) const { return view().substr(0, n); }

  private:
    std::unique_ptr<char[]> block_;
    std::size_t offset_;
    std::size_t size_;
};

constexpr std::size_t offsets[] = {0, 1, 7, 31};

/// Random numbers that are the same in each run.
class Random {
  public:
    explicit Random(std::uint32_t seed) : engine_(seed) {}

    std::size_t below(std::size_t n) { return engine_() % n; }
    char one_of(std::string_view characters) { return characters[below(characters.size())]; }
    char byte() { return static_cast<char>(below(256)); }

    std::string bytes(std::size_t n) {
        std::string result(n, '\0');
        for (char& c : result) c = byte();
        return result;
    }

    std::string text(std::size_t n, std::string_view characters) {
        std::string result(n, '\0');
        for (char& c : result) c = one_of(characters);
        return result;
    }

  private:
    std::mt19937 engine_;
};

/// Returns all 256 bytes, in order.
inline std::string all_bytes() {
    std::string result(256, '\0');
    for (std::size_t i = 0; i < result.size(); ++i) result[i] = static_cast<char>(i);
    return result;
}

}  // namespace quill::codec::test
