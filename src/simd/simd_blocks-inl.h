// Blocks of 64 bytes for the kernels, on vectors of 16, 32 or 64 bytes. Included once per target, as Highway requires.

#ifndef QUILL_CODEC_SIMD_BLOCKS_ONCE
#define QUILL_CODEC_SIMD_BLOCKS_ONCE

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quill::simd {

constexpr std::size_t block_size = 64;

/// One byte for each ASCII character. A kernel's code for a character of its alphabet is `data_code` with the value in
/// the lowest 6 bits. Characters outside the table, 128 to 255 included, have the code 0.
using CharacterCodes = std::array<std::uint8_t, 128>;
constexpr std::uint8_t data_code = 0x80;
constexpr std::uint8_t blank_code = 0x40;
constexpr std::uint8_t value_bits = 0x3F;

constexpr CharacterCodes make_codes(std::string_view characters) {
    CharacterCodes codes{};
    std::uint8_t code = data_code;
    for (const char c : characters) codes[static_cast<unsigned char>(c)] = code++;
    return codes;
}

/// The characters for the values 0 to 63.
using Characters = std::array<std::uint8_t, 64>;

constexpr Characters make_characters(std::string_view characters) {
    Characters result{};
    for (std::size_t i = 0; i < result.size(); ++i) result[i] = static_cast<std::uint8_t>(characters[i]);
    return result;
}

/// Returns, for each set of 8 kept bytes, the source of each byte of the packed result.
constexpr std::array<std::array<std::uint8_t, 8>, 256> make_packing_orders() {
    std::array<std::array<std::uint8_t, 8>, 256> orders{};
    for (unsigned keep = 0; keep < 256; ++keep) {
        std::size_t n = 0;
        for (unsigned bit = 0; bit < 8; ++bit) {
            if ((keep >> bit & 1U) != 0) orders[keep][n++] = static_cast<std::uint8_t>(bit);
        }
    }
    return orders;
}
inline constexpr auto packing_orders = make_packing_orders();

constexpr std::array<std::uint8_t, 256> make_bit_counts() {
    std::array<std::uint8_t, 256> counts{};
    for (unsigned i = 0; i < 256; ++i) counts[i] = static_cast<std::uint8_t>(std::popcount(i));
    return counts;
}
inline constexpr auto bit_counts = make_bit_counts();

/// Returns a mask of the lowest `n` bits, n from 0 to 64.
constexpr std::uint64_t low_bits(std::size_t n) {
    return n >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << n) - 1;
}

inline std::uint8_t* bytes(char* p) {
    return reinterpret_cast<std::uint8_t*>(p);
}

inline const std::uint8_t* bytes(const char* p) {
    return reinterpret_cast<const std::uint8_t*>(p);
}

}  // namespace quill::simd

#endif

#if defined(QUILL_CODEC_SIMD_BLOCKS_TARGET) == defined(HWY_TARGET_TOGGLE)
#ifdef QUILL_CODEC_SIMD_BLOCKS_TARGET
#undef QUILL_CODEC_SIMD_BLOCKS_TARGET
#else
#define QUILL_CODEC_SIMD_BLOCKS_TARGET
#endif

#include <hwy/highway.h>

/// 0 if Highway has only one lane, or emulates; each kernel calls its reference then.
#undef QUILL_HAS_VECTORS
#define QUILL_HAS_VECTORS (HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128)

#if QUILL_HAS_VECTORS
HWY_BEFORE_NAMESPACE();
namespace quill::simd::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::CappedTag<std::uint8_t, block_size>;
using Words = hn::Repartition<std::uint16_t, Bytes>;
using DoubleWords = hn::Repartition<std::uint32_t, Bytes>;
using V = hn::Vec<Bytes>;

constexpr std::size_t lanes = hn::MaxLanes(Bytes());
constexpr std::size_t vectors = block_size / lanes;
static_assert(vectors * lanes == block_size);

/// 64 bytes of text.
struct Block {
    V v[vectors];
};

HWY_INLINE Block load_block(const char* from) {
    Block block;
    for (std::size_t k = 0; k < vectors; ++k) block.v[k] = hn::LoadU(Bytes(), bytes(from) + k * lanes);
    return block;
}

HWY_INLINE V splat(char c) {
    return hn::Set(Bytes(), static_cast<std::uint8_t>(c));
}

/// Returns one bit for each lane, the first lane's lowest.
HWY_INLINE std::uint64_t bits_of(hn::Mask<Bytes> mask) {
    using Bits = hwy::UnsignedFromSize<lanes / 8>;
    std::uint8_t stored[8];
    hn::StoreMaskBits(Bytes(), mask, stored);
    Bits bits;
    std::memcpy(&bits, stored, sizeof bits);
    return bits;
}

HWY_INLINE std::uint64_t equal_bits(const Block& block, char c) {
    std::uint64_t bits = 0;
    for (std::size_t k = 0; k < vectors; ++k) bits |= bits_of(hn::Eq(block.v[k], splat(c))) << k * lanes;
    return bits;
}

/// Returns the bits of the lanes whose highest bit is set.
HWY_INLINE std::uint64_t high_bits(V v) {
    const hn::RebindToSigned<Bytes> d;
    return bits_of(hn::RebindMask(Bytes(), hn::Lt(hn::BitCast(d, v), hn::Zero(d))));
}

/// Writes the bytes of `v` whose bit in `keep` is set and returns their end. Overwrites as many bytes as `v` has.
HWY_INLINE char* pack_kept(hn::Vec128<std::uint8_t> v, std::uint64_t keep, char* out) {
    const hn::Full128<std::uint8_t> d;
    const hn::Full64<std::uint8_t> half;
    const std::size_t low = keep & 0xFFU;
    const std::size_t high = keep >> 8U & 0xFFU;
    const auto low_order = hn::LoadU(half, packing_orders[low].data());
    const auto high_order = hn::Add(hn::LoadU(half, packing_orders[high].data()), hn::Set(half, 8));
    const auto packed = hn::TableLookupBytes(v, hn::Combine(d, high_order, low_order));
    hn::StoreU(hn::LowerHalf(half, packed), half, bytes(out));
    out += bit_counts[low];
    hn::StoreU(hn::UpperHalf(half, packed), half, bytes(out));
    return out + bit_counts[high];
}

#if HWY_TARGET == HWY_AVX3_DL
HWY_INLINE char* pack_kept(hn::Vec512<std::uint8_t> v, std::uint64_t keep, char* out) {
    _mm512_storeu_si512(out, _mm512_maskz_compress_epi8(keep, v.raw));
    return out + std::popcount(keep);
}
#elif HWY_TARGET == HWY_AVX2
HWY_INLINE char* pack_kept(hn::Vec256<std::uint8_t> v, std::uint64_t keep, char* out) {
    const hn::Full128<std::uint8_t> half;
    out = pack_kept(hn::LowerHalf(half, v), keep & 0xFFFFU, out);
    return pack_kept(hn::UpperHalf(half, v), keep >> 16U & 0xFFFFU, out);
}
#endif

HWY_INLINE char* pack_kept(const Block& block, std::uint64_t keep, char* out) {
    for (std::size_t k = 0; k < vectors; ++k) out = pack_kept(block.v[k], keep >> k * lanes & low_bits(lanes), out);
    return out;
}

/// Returns the code of each character; 0 for 128 to 255.
HWY_INLINE V codes_of(const CharacterCodes& codes, V v) {
#if HWY_TARGET == HWY_AVX3_DL
    const __m512i low = _mm512_loadu_si512(codes.data());
    const __m512i high = _mm512_loadu_si512(codes.data() + 64);
    const __mmask64 ascii = ~_mm512_movepi8_mask(v.raw);
    return V{_mm512_maskz_permutex2var_epi8(ascii, low, v.raw, high)};
#else
    const Bytes d;
    const V row = hn::ShiftRight<4>(v);
    const V column = hn::And(v, hn::Set(d, 15));
    V result = hn::Zero(d);
    for (std::size_t i = 0; i < codes.size() / 16; ++i) {
        if (i == 1) continue;  // no alphabet has control characters from 16 to 31
        const V found = hn::TableLookupBytes(hn::LoadDup128(d, codes.data() + 16 * i), column);
        result = hn::Or(result, hn::IfThenElseZero(hn::Eq(row, hn::Set(d, static_cast<std::uint8_t>(i))), found));
    }
    return result;
#endif
}

/// Returns the character for each value 0 to 63.
HWY_INLINE V characters_for(const Characters& characters, V values) {
#if HWY_TARGET == HWY_AVX3_DL
    return V{_mm512_permutexvar_epi8(values.raw, _mm512_loadu_si512(characters.data()))};
#else
    const Bytes d;
    const V row = hn::ShiftRight<4>(values);
    const V column = hn::And(values, hn::Set(d, 15));
    V result = hn::Zero(d);
    for (std::size_t i = 0; i < 4; ++i) {
        const V found = hn::TableLookupBytes(hn::LoadDup128(d, characters.data() + 16 * i), column);
        result = hn::Or(result, hn::IfThenElseZero(hn::Eq(row, hn::Set(d, static_cast<std::uint8_t>(i))), found));
    }
    return result;
#endif
}

/// Moves the low three 32-bit lanes of each four together at the beginning.
HWY_INLINE V close_gaps(V v) {
    if constexpr (lanes == 16) return v;
    alignas(64) static constexpr std::int32_t order[16] = {0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 0, 0, 0, 0};
    alignas(64) static constexpr std::int32_t order_of_8[8] = {0, 1, 2, 4, 5, 6, 0, 0};
    const DoubleWords d;
    const auto indices = hn::SetTableIndices(d, lanes == 64 ? order : order_of_8);
    return hn::BitCast(Bytes(), hn::TableLookupLanes(hn::BitCast(d, v), indices));
}

/// Does the opposite: spreads three 32-bit lanes from the beginning over each four.
HWY_INLINE V open_gaps(V v) {
    if constexpr (lanes == 16) return v;
    alignas(64) static constexpr std::int32_t order[16] = {0, 1, 2, 0, 3, 4, 5, 0, 6, 7, 8, 0, 9, 10, 11, 0};
    const DoubleWords d;
    return hn::BitCast(Bytes(), hn::TableLookupLanes(hn::BitCast(d, v), hn::SetTableIndices(d, order)));
}

/// Joins each four values of 6 bits into three bytes; the result is `lanes` / 4 * 3 bytes from the beginning.
HWY_INLINE V join_groups(V values) {
    const Words words;
    const DoubleWords double_words;
    const auto pairs = hn::BitCast(words, values);
    const auto twelve = hn::Or(hn::ShiftLeft<6>(hn::And(pairs, hn::Set(words, 0x00FF))), hn::ShiftRight<8>(pairs));
    const auto fours = hn::BitCast(double_words, twelve);
    const auto joined =
        hn::Or(hn::ShiftLeft<12>(hn::And(fours, hn::Set(double_words, 0xFFFF))), hn::ShiftRight<16>(fours));
    alignas(16) static constexpr std::uint8_t order[16] = {2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, 3, 3, 3, 3};
    return close_gaps(hn::TableLookupBytes(hn::BitCast(Bytes(), joined), hn::LoadDup128(Bytes(), order)));
}

/// Splits the first `lanes` / 4 * 3 bytes into values of 6 bits.
HWY_INLINE V split_groups(V v) {
    alignas(16) static constexpr std::uint8_t order[16] = {1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10};
    const Words words;
    const DoubleWords double_words;
    // In each 32-bit lane, from the lowest bit: bbbbcccc aaaaaabb ccdddddd bbbbcccc, each letter a bit of a value.
    const V spread = hn::TableLookupBytes(open_gaps(v), hn::LoadDup128(Bytes(), order));
    const auto outer =
        hn::BitCast(words, hn::And(hn::BitCast(double_words, spread), hn::Set(double_words, 0x0FC0FC00)));
    const auto inner =
        hn::BitCast(words, hn::And(hn::BitCast(double_words, spread), hn::Set(double_words, 0x003F03F0)));
    // Multiplying shifts the two 16-bit halves by different counts.
    const auto right = hn::BitCast(words, hn::Set(double_words, 0x04000040));
    const auto left = hn::BitCast(words, hn::Set(double_words, 0x01000010));
    return hn::BitCast(Bytes(), hn::Or(hn::MulHigh(outer, right), hn::Mul(inner, left)));
}

}  // namespace quill::simd::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif
#endif
