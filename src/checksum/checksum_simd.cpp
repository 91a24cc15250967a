#include "checksum/checksum.h"
#include "simd/simd_dispatch.h"
#include "simd/simd_targets.h"

#include <libdeflate.h>

#include <cstddef>
#include <cstdint>

// This order matters.
// clang-format off
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "checksum/checksum_simd.cpp"
#include <hwy/foreach_target.h>
#include "simd/simd_blocks-inl.h"
// clang-format on

#ifndef QUILL_CODEC_CHECKSUM_ONCE
#define QUILL_CODEC_CHECKSUM_ONCE
namespace quill::simd {

/// Returns the reflected remainder of x^n by the polynomial of CRC-32 as the factor of a carry-less multiplication:
/// shifted up one place, because the product of two reflected numbers is one place short.
constexpr std::uint64_t remainder_of_power(unsigned n) {
    constexpr std::uint32_t polynomial = 0xEDB88320;
    std::uint32_t remainder = 0x80000000;  // of x^0
    for (unsigned i = 0; i < n; ++i) remainder = remainder >> 1U ^ ((remainder & 1U) != 0 ? polynomial : 0);
    return std::uint64_t{remainder} << 1U;
}
static_assert(remainder_of_power(544) == 0x154442BD4 && remainder_of_power(480) == 0x1C6E41596);

}  // namespace quill::simd
#endif

HWY_BEFORE_NAMESPACE();
namespace quill::HWY_NAMESPACE {

#if QUILL_HAS_VECTORS && HWY_TARGET == HWY_AVX3_DL
using namespace simd::HWY_NAMESPACE;
using namespace simd;

using QuadWords = hn::ScalableTag<std::uint64_t>;
using Q = hn::Vec<QuadWords>;

/// The two factors that move 128 bits on by `Bits`, in each 128 bits of a vector.
template <unsigned Bits>
Q factors() {
    constexpr std::uint64_t low = remainder_of_power(Bits + 32);
    constexpr std::uint64_t high = remainder_of_power(Bits - 32);
    return hn::OddEven(hn::Set(QuadWords(), high), hn::Set(QuadWords(), low));
}

Q folded(Q v, Q factors, Q onto) {
    return hn::Xor(hn::Xor(hn::CLMulLower(v, factors), hn::CLMulUpper(v, factors)), onto);
}

/// Folds the data, four vectors at a time, into one vector that has the same remainder (V. Gopal and others, "Fast CRC
/// computation for generic polynomials using PCLMULQDQ"), and leaves that and the bytes after it to libdeflate.
std::uint32_t crc32(std::uint32_t crc, std::string_view in) {
    constexpr std::size_t at_once = 4 * block_size;
    if (in.size() < 2 * at_once) return libdeflate_crc32(crc, in.data(), in.size());
    const auto load = [&](std::size_t at) {
        return hn::BitCast(QuadWords(), hn::LoadU(Bytes(), bytes(in.data()) + at));
    };
    std::uint64_t state[block_size / sizeof(std::uint64_t)] = {~crc};
    Q a = hn::Xor(load(0), hn::LoadU(QuadWords(), state));
    Q b = load(block_size);
    Q c = load(2 * block_size);
    Q d = load(3 * block_size);
    const Q by_four = factors<4 * 8 * block_size>();
    std::size_t at = at_once;
    for (; at + at_once <= in.size(); at += at_once) {
        a = folded(a, by_four, load(at));
        b = folded(b, by_four, load(at + block_size));
        c = folded(c, by_four, load(at + 2 * block_size));
        d = folded(d, by_four, load(at + 3 * block_size));
    }
    const Q by_one = factors<8 * block_size>();
    hn::StoreU(folded(folded(folded(a, by_one, b), by_one, c), by_one, d), QuadWords(), state);
    // The state of the CRC has gone into the vector: from here on it is 0, which libdeflate has as all bits set.
    const std::uint32_t of_vector = libdeflate_crc32(0xFFFFFFFF, state, sizeof state);
    return libdeflate_crc32(of_vector, in.data() + at, in.size() - at);
}

#else

std::uint32_t crc32(std::uint32_t crc, std::string_view in) {
    return libdeflate_crc32(crc, in.data(), in.size());
}

#endif

}  // namespace quill::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quill {
namespace {
QUILL_KERNELS(crc32);
}  // namespace

std::uint32_t crc32(std::uint32_t crc, std::string_view bytes) {
    return simd::chosen_of(crc32_kernels)(crc, bytes);
}

}  // namespace quill
#endif
