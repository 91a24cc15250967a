#include "codec/lines.h"
#include "codec/simd_dispatch.h"
#include "codec/simd_targets.h"

// This order matters.
// clang-format off
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "codec/lines_simd.cpp"
#include <hwy/foreach_target.h>
#include "codec/simd_blocks-inl.h"
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

#else

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
}

std::size_t find_line_end(std::string_view s, std::size_t from) {
    return simd::chosen_of(find_line_end_kernels)(s, from);
}

}  // namespace quill::codec
#endif
