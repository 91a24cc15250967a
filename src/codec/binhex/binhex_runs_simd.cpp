#include "codec/binhex/binhex_runs.h"
#include "simd/simd_dispatch.h"
#include "simd/simd_targets.h"

// This order matters.
// clang-format off
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "codec/binhex/binhex_runs_simd.cpp"
#include <hwy/foreach_target.h>
#include "simd/simd_blocks-inl.h"
// clang-format on

HWY_BEFORE_NAMESPACE();
namespace quill::codec::binhex::HWY_NAMESPACE {

#if QUILL_HAS_VECTORS
using namespace simd::HWY_NAMESPACE;
using namespace simd;

std::size_t find_run_or_marker(std::string_view in, std::size_t from) {
    static_assert(shortest_run == 4);
    std::size_t at = from;
    for (; at + lanes + shortest_run <= in.size(); at += lanes) {
        const std::uint8_t* const first = bytes(in.data()) + at;
        const V block = hn::LoadU(Bytes(), first);
        const V next = hn::LoadU(Bytes(), first + 1);
        const auto pairs = hn::Eq(block, next);
        const auto next_pairs = hn::Eq(hn::LoadU(Bytes(), first + 2), hn::LoadU(Bytes(), first + 3));
        const auto runs = hn::And(hn::And(pairs, next_pairs), hn::Eq(next, hn::LoadU(Bytes(), first + 2)));
        const std::uint64_t found = bits_of(hn::Or(runs, hn::Eq(block, splat(run_marker))));
        if (found != 0) return at + static_cast<std::size_t>(std::countr_zero(found));
    }
    return find_run_or_marker_reference(in, at);
}

#else

std::size_t find_run_or_marker(std::string_view in, std::size_t from) {
    return find_run_or_marker_reference(in, from);
}

#endif

}  // namespace quill::codec::binhex::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quill::codec::binhex {
namespace {
QUILL_KERNELS(find_run_or_marker);
}  // namespace

std::size_t find_run_or_marker(std::string_view in, std::size_t from) {
    return simd::chosen_of(find_run_or_marker_kernels)(in, from);
}

}  // namespace quill::codec::binhex
#endif
