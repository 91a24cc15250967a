#include "codec/input/lines.h"
#include "simd/simd_dispatch.h"
#include "simd/simd_targets.h"

#include <algorithm>

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

/// Bits of the bytes of the block at `at` that are what is looked for. One byte before it and one behind are read.
std::uint64_t beginning_bits(const char* at, std::string_view first_characters) {
    const Block block = load_block(at);
    const Block before = load_block(at - 1);
    const std::uint64_t behind_cr = equal_bits(before, '\r');
    const std::uint64_t behind_lf = equal_bits(before, '\n');
    std::uint64_t wanted = 0;
    for (const char c : first_characters) wanted |= equal_bits(block, c);
    const std::uint64_t cr = equal_bits(block, '\r');
    const std::uint64_t lf = equal_bits(block, '\n');
    // CR CR is an empty line, but not in CR CR LF.
    const std::uint64_t empty_behind_cr = behind_cr & cr & ~equal_bits(load_block(at + 1), '\n');
    return ((behind_cr | behind_lf) & wanted) | (behind_lf & (cr | lf)) | empty_behind_cr;
}

std::size_t find_line_beginning(std::string_view s, std::size_t from, std::string_view first_characters) {
    std::size_t at = from + 1;
    for (; at + block_size < s.size(); at += block_size) {
        const std::uint64_t found = beginning_bits(s.data() + at, first_characters);
        if (found != 0) return at + static_cast<std::size_t>(std::countr_zero(found));
    }
    // The reference goes on from a line that has characters: none of those between `from` and here is empty.
    const std::size_t text = s.find_last_not_of("\r\n", at - 1);
    const std::size_t line = text == std::string_view::npos ? 0 : s.find_last_of("\r\n", text) + 1;
    return find_line_beginning_reference(s, std::max(line, from), first_characters);
}

#else

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
QUILL_KERNELS(find_line_end);
QUILL_KERNELS(find_line_beginning);
}  // namespace

std::size_t find_line_end(std::string_view s, std::size_t from) {
    return simd::chosen_of(find_line_end_kernels)(s, from);
}

std::size_t find_line_beginning(std::string_view s, std::size_t from, std::string_view first_characters) {
    return simd::chosen_of(find_line_beginning_kernels)(s, from, first_characters);
}

}  // namespace quill::codec
#endif
