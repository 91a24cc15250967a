#include "codec/yenc/yenc.h"
#include "simd/simd_dispatch.h"
#include "simd/simd_targets.h"

#include <algorithm>

// This order matters.
// clang-format off
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "codec/yenc/yenc_simd.cpp"
#include <hwy/foreach_target.h>
#include "simd/simd_blocks-inl.h"
// clang-format on

HWY_BEFORE_NAMESPACE();
namespace quill::codec::yenc::HWY_NAMESPACE {

#if QUILL_HAS_VECTORS
using namespace simd::HWY_NAMESPACE;
using namespace simd;

constexpr std::uint8_t shift = 42;
constexpr std::uint8_t escape_shift = 64;

constexpr bool is_draft(Rules rules) {
    return rules == Rules::draft || rules == Rules::draft_dotted;
}

constexpr bool drops_dots(Rules rules) {
    return rules == Rules::dotted || rules == Rules::draft_dotted;
}

/// The state that one block leaves for the next.
struct Carry {
    bool in_token = false;     ///< the block's last byte begins a pair that the next one's first byte ends
    std::uint64_t passed = 0;  ///< bit 0: the next block's first byte is not data
};

/// Returns bits for the bytes in `block` that are not data but begin and end lines (or precede a line end), for text at
/// `at`.
template <Rules rules>
std::uint64_t passed_over(const char* at, const Block& block, std::uint64_t escaped, Carry& carry) {
    if constexpr (is_draft(rules)) {
        carry = {};
        return (equal_bits(block, '\r') | equal_bits(block, '\n')) & ~escaped;
    } else {
        const std::uint64_t lf_next = equal_bits(load_block(at + 1), '\n');
        const std::uint64_t line_ends = equal_bits(block, '\r') & lf_next & ~escaped;
        std::uint64_t passed = line_ends | line_ends << 1U | carry.passed;
        carry.passed = line_ends >> 63U;
        const std::uint64_t blanks = equal_bits(block, ' ');
        const std::uint64_t blank_next = blanks >> 1U | static_cast<std::uint64_t>(at[block_size] == ' ') << 63U;
        if (const std::uint64_t pairs = blanks & blank_next & ~escaped; pairs != 0) {
            const std::uint64_t before_line_end =
                pairs & equal_bits(load_block(at + 2), '\r') & equal_bits(load_block(at + 3), '\n');
            passed |= before_line_end | before_line_end << 1U;
            carry.passed |= before_line_end >> 63U;
        }
        carry.in_token = carry.passed != 0;
        return passed;
    }
}

/// Returns bits for the dots at the start of a line before another dot.
template <Rules rules>
std::uint64_t stuffed_dots(const char* at, const Block& block, const Block& before) {
    const std::uint64_t dots = equal_bits(block, '.') & equal_bits(load_block(at + 1), '.');
    if (dots == 0) return 0;
    std::uint64_t line_starts = equal_bits(before, '\n');
    if constexpr (is_draft(rules)) line_starts |= equal_bits(before, '\r');
    return dots & line_starts;
}

/// Decodes whole blocks from `progress.read`, whose preceding byte exists and is not '=', up to one that has an unusual
/// '=' or is too close to the end.
template <Rules rules>
void decode_blocks(std::string_view in, char* out, Progress& progress) {
    Carry carry;
    while (progress.read + block_size + look_ahead < in.size()) {
        const char* const at = in.data() + progress.read;
        const Block block = load_block(at);
        const Block before = load_block(at - 1);
        const std::uint64_t escapes = equal_bits(block, '=');
        const std::uint64_t escaped = equal_bits(before, '=');
        if ((escapes & (escaped | equal_bits(load_block(at + 1), 'y'))) != 0) break;
        std::uint64_t passed = escapes | passed_over<rules>(at, block, escaped, carry);
        if constexpr (drops_dots(rules)) passed |= stuffed_dots<rules>(at, block, before);
        carry.in_token |= escapes >> 63U != 0;
        Block decoded;
        for (std::size_t k = 0; k < vectors; ++k) {
            const auto is_escaped = hn::Eq(before.v[k], splat('='));
            const V added =
                hn::Add(hn::Set(Bytes(), shift), hn::IfThenElseZero(is_escaped, hn::Set(Bytes(), escape_shift)));
            decoded.v[k] = hn::Sub(block.v[k], added);
        }
        char* const begin = out + progress.written;
        progress.written += static_cast<std::size_t>(pack_kept(decoded, ~passed, begin) - begin);
        progress.read += block_size;
    }
    if (carry.in_token) progress.read -= 1;
}

template <Rules rules>
Progress decode_with(std::string_view in, unsigned char previous, bool last, char* out) {
    Progress progress;
    while (!progress.ended && progress.read < in.size()) {
        // The reference handles what blocks can't: the beginning, unusual '=', the end.
        std::string_view piece = in.substr(progress.read);
        const bool reaches_end = piece.size() <= block_size + look_ahead;
        if (!reaches_end) piece = piece.substr(0, progress.read == 0 ? 2 * look_ahead : block_size + look_ahead);
        const unsigned char before = progress.read == 0 ? previous : bytes(in.data())[progress.read - 1];
        const Progress step = decode_reference(rules, piece, before, reaches_end && last, out + progress.written);
        progress.read += step.read;
        progress.written += step.written;
        progress.ended = step.ended;
        if (reaches_end) break;
        if (!progress.ended && in[progress.read - 1] != '=') decode_blocks<rules>(in, out, progress);
    }
    return progress;
}

Progress decode(Rules rules, std::string_view in, unsigned char previous, bool last, char* out) {
    switch (rules) {
        case Rules::plain:
            return decode_with<Rules::plain>(in, previous, last, out);
        case Rules::dotted:
            return decode_with<Rules::dotted>(in, previous, last, out);
        case Rules::draft:
            return decode_with<Rules::draft>(in, previous, last, out);
        case Rules::draft_dotted:
            break;
    }
    return decode_with<Rules::draft_dotted>(in, previous, last, out);
}

/// Returns how many bytes of a block it takes to write at least `room` characters, counting two for those in
/// `critical`; 64 if a block is not enough.
std::size_t bytes_for(std::size_t room, std::uint64_t critical) {
    const auto extra = [critical](std::size_t n) {
        return static_cast<std::size_t>(std::popcount(critical & low_bits(n)));
    };
    if (block_size + extra(block_size) < room) return block_size;
    std::size_t n = room - extra(std::min(room, block_size));
    while (n + extra(n) < room) ++n;
    return n;
}

/// Writes each byte, with '=' before those of `critical` (lanes of all bits).
char* write_escaped(V encoded, V critical, char* out) {
    const hn::Half<Bytes> half;
    const hn::RebindToSigned<Words> signed_words;
    const auto write_half = [&](auto text, auto is_critical) HWY_ATTR {
        // '=' and the byte for each lane; the byte is always kept, the '=' only if the byte is critical.
        const auto pairs = hn::Or(hn::ShiftLeft<8>(hn::PromoteTo(Words(), text)), hn::Set(Words(), '='));
        const auto wanted = hn::PromoteTo(signed_words, hn::BitCast(hn::RebindToSigned<decltype(half)>(), is_critical));
        const auto kept = hn::Or(hn::BitCast(Words(), wanted), hn::Set(Words(), 0xFF00));
        out = pack_kept(hn::BitCast(Bytes(), pairs), high_bits(hn::BitCast(Bytes(), kept)), out);
    };
    write_half(hn::LowerHalf(half, encoded), hn::LowerHalf(half, critical));
    write_half(hn::UpperHalf(half, encoded), hn::UpperHalf(half, critical));
    return out;
}

/// Returns the bytes that must be escaped.
hn::Mask<Bytes> is_critical(V v) {
    const auto line_end = hn::Or(hn::Eq(v, splat('\r')), hn::Eq(v, splat('\n')));
    return hn::Or(line_end, hn::Or(hn::Eq(v, splat('\0')), hn::Eq(v, splat('='))));
}

/// Encodes 64 bytes. Returns which are critical.
std::uint64_t encode_block(const char* in, char* out) {
    const Block block = load_block(in);
    std::uint64_t critical = 0;
    for (std::size_t k = 0; k < vectors; ++k) {
        const V shifted = hn::Add(block.v[k], hn::Set(Bytes(), shift));
        const auto mask = is_critical(shifted);
        const V escaped = hn::Add(shifted, hn::IfThenElseZero(mask, hn::Set(Bytes(), escape_shift)));
        out = write_escaped(escaped, hn::VecFromMask(Bytes(), mask), out);
        critical |= bits_of(mask) << k * lanes;
    }
    return critical;
}

std::size_t encode(std::string_view in, std::size_t line_length, Column& column, char* out) {
    const char* const begin = out;
    while (in.size() >= block_size) {
        const std::size_t room = line_length > column.characters ? line_length - column.characters : 1;
        const std::uint64_t critical = encode_block(in.data(), out);
        const std::size_t taken = bytes_for(room, critical);
        const std::size_t characters = taken + static_cast<std::size_t>(std::popcount(critical & low_bits(taken)));
        in.remove_prefix(taken);
        out += characters;
        column.characters += characters;
        if (characters < room) continue;
        *out++ = '\r';
        *out++ = '\n';
        column.characters = 0;
    }
    return static_cast<std::size_t>(out - begin) + encode_reference(in, line_length, column, out);
}

#else

Progress decode(Rules rules, std::string_view in, unsigned char previous, bool last, char* out) {
    return decode_reference(rules, in, previous, last, out);
}

std::size_t encode(std::string_view in, std::size_t line_length, Column& column, char* out) {
    return encode_reference(in, line_length, column, out);
}

#endif

}  // namespace quill::codec::yenc::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quill::codec::yenc {
namespace {
QUILL_KERNELS(decode);
QUILL_KERNELS(encode);
}  // namespace

Progress decode(Rules rules, std::string_view in, unsigned char previous, bool last, char* out) {
    return simd::chosen_of(decode_kernels)(rules, in, previous, last, out);
}

std::size_t encode(std::string_view in, std::size_t line_length, Column& column, char* out) {
    return simd::chosen_of(encode_kernels)(in, line_length, column, out);
}

}  // namespace quill::codec::yenc
#endif
