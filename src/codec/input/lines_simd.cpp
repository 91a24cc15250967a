#include "codec/input/lines.h"
#include "simd/simd_dispatch.h"
#include "simd/simd_targets.h"

#include <algorithm>
#include <bit>
#include <cstdint>

// This order matters.
// clang-format off
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "codec/input/lines_simd.cpp"
#include <hwy/foreach_target.h>
#include "simd/simd_blocks-inl.h"
// clang-format on

HWY_BEFORE_NAMESPACE();
namespace quill::codec::HWY_NAMESPACE {

#if QUILL_HAS_VECTORS
using namespace simd::HWY_NAMESPACE;
using namespace simd;

std::uint64_t line_end_bits(V v) {
    return bits_of(hn::Or(hn::Eq(v, splat('\r')), hn::Eq(v, splat('\n'))));
}

std::size_t find_line_end(std::string_view s, std::size_t from) {
    std::size_t at = from;
    for (; at + lanes <= s.size(); at += lanes) {
        const std::uint64_t found = line_end_bits(hn::LoadU(Bytes(), bytes(s.data()) + at));
        if (found != 0) return at + static_cast<std::size_t>(std::countr_zero(found));
    }
    return find_line_end_reference(s, at);
}

std::uint64_t line_end_bits(const Block& block) {
    std::uint64_t bits = 0;
    for (std::size_t k = 0; k < vectors; ++k) bits |= line_end_bits(block.v[k]) << k * lanes;
    return bits;
}

std::size_t count_line_ends(std::string_view s) {
    std::size_t count = 0;
    for (; s.size() >= block_size; s.remove_prefix(block_size)) {
        count += static_cast<std::size_t>(std::popcount(line_end_bits(load_block(s.data()))));
    }
    return count + count_line_ends_reference(s);
}

/// Returns true if the character at `at`, which follows a CR or LF and is not the last one, begins a line that is
/// searched for.
bool begins_line(std::string_view s, std::size_t at, std::string_view first_characters) {
    const char c = s[at];
    if (c == '\n') return s[at - 1] == '\n';
    // CR CR is an empty line, but not in CR CR LF.
    if (c == '\r') return s[at - 1] == '\n' || s[at + 1] != '\n';
    return std::find(first_characters.begin(), first_characters.end(), c) != first_characters.end();
}

std::size_t find_line_beginning(std::string_view s, std::size_t from, std::string_view first_characters) {
    std::size_t at = from + 1;
    for (; at + block_size < s.size(); at += block_size) {
        for (std::uint64_t bits = line_end_bits(load_block(s.data() + at - 1)); bits != 0; bits &= bits - 1) {
            const std::size_t place = at + static_cast<std::size_t>(std::countr_zero(bits));
            if (begins_line(s, place, first_characters)) return place;
        }
    }
    // The reference continues from a line that has characters: none of those between `from` and here is empty.
    const std::size_t text = s.find_last_not_of("\r\n", at - 1);
    const std::size_t line = text == std::string_view::npos ? 0 : s.find_last_of("\r\n", text) + 1;
    return find_line_beginning_reference(s, std::max(line, from), first_characters);
}

#else

std::size_t count_line_ends(std::string_view s) {
    return count_line_ends_reference(s);
}

std::size_t find_line_beginning(std::string_view s, std::size_t from, std::string_view first_characters) {
    return find_line_beginning_reference(s, from, first_characters);
}

std::size_t find_line_end(std::string_view s, std::size_t from) {
    return find_line_end_reference(s, from);
}

#endif

}  // namespace quill::codec::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quill::codec {
namespace {
QUILL_KERNELS(count_line_ends);
QUILL_KERNELS(find_line_end);
QUILL_KERNELS(find_line_beginning);
}  // namespace

std::size_t count_line_ends(std::string_view s) {
    return simd::chosen_of(count_line_ends_kernels)(s);
}

std::size_t find_line_end(std::string_view s, std::size_t from) {
    return simd::chosen_of(find_line_end_kernels)(s, from);
}

std::size_t find_line_beginning(std::string_view s, std::size_t from, std::string_view first_characters) {
    return simd::chosen_of(find_line_beginning_kernels)(s, from, first_characters);
}

}  // namespace quill::codec
#endif
