#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// Chooses which build of the kernels runs. The choice is made here and not by Highway's library, because loading that
/// library measures the processor's clock for some milliseconds at each start of a program.
namespace quill::simd {

/// The targets in simd_targets.h, from slow to fast.
enum class Target : std::uint8_t {
    reference,  ///< any processor
    neon,
    ssse3,
    avx2,
    avx3_dl
};

constexpr std::size_t target_count = 5;

std::string_view name_of(Target target);

/// Returns the targets that this processor supports, from slow to fast.
std::vector<Target> available_targets();

/// Returns the target in use: initially the fastest one available.
Target chosen_target();

/// Makes the kernels run on `target`, which must be available: for comparisons between targets.
void choose_target(Target target);

/// A kernel on each target, null if it was not built.
template <class Function>
using Kernels = std::array<Function, target_count>;

template <class Function>
Function chosen_of(const Kernels<Function>& kernels) {
    const Function kernel = kernels[static_cast<std::size_t>(chosen_target())];
    return kernel != nullptr ? kernel : kernels.front();
}

}  // namespace quill::simd

/// Defines `f_kernels` of the function `f` that each target's namespace has. The first one is for the processors that
/// the compiler was configured for, which is `reference` if it was configured for none in particular.
#define QUILL_KERNELS(f)                                                                                            \
    constexpr ::quill::simd::Kernels<decltype(&HWY_STATIC_DISPATCH(f))> f##_kernels {                               \
        &HWY_STATIC_DISPATCH(f), HWY_CHOOSE_NEON(f), HWY_CHOOSE_SSSE3(f), HWY_CHOOSE_AVX2(f), HWY_CHOOSE_AVX3_DL(f) \
    }
