#include "simd/simd_dispatch.h"

#include <atomic>

namespace quill::simd {
namespace {

constexpr std::array<std::string_view, target_count> names = {"reference", "NEON", "SSSE3", "AVX2", "AVX3_DL"};

bool is_available(Target target) {
    switch (target) {
        case Target::reference:
            return true;
#if defined(__x86_64__)
        case Target::ssse3:
            return __builtin_cpu_supports("ssse3");
        case Target::avx2:
            return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("bmi") &&
                   __builtin_cpu_supports("bmi2");
        case Target::avx3_dl:
            return is_available(Target::avx2) && __builtin_cpu_supports("avx512f") &&
                   __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
                   __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512cd") &&
                   __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2") &&
                   __builtin_cpu_supports("avx512vnni") && __builtin_cpu_supports("avx512bitalg") &&
                   __builtin_cpu_supports("avx512vpopcntdq") && __builtin_cpu_supports("vpclmulqdq");
#elif defined(__aarch64__)
        case Target::neon:
            return true;
#endif
        default:
            return false;
    }
}

std::atomic<Target>& chosen() {
    static std::atomic<Target> target{available_targets().back()};
    return target;
}

}  // namespace

std::string_view name_of(Target target) {
    return names[static_cast<std::size_t>(target)];
}

std::vector<Target> available_targets() {
    std::vector<Target> targets;
    for (std::size_t i = 0; i < target_count; ++i) {
        if (is_available(static_cast<Target>(i))) targets.push_back(static_cast<Target>(i));
    }
    return targets;
}

Target chosen_target() {
    return chosen().load(std::memory_order_relaxed);
}

void choose_target(Target target) {
    chosen().store(target, std::memory_order_relaxed);
}

}  // namespace quill::simd
