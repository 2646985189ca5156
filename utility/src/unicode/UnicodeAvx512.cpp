#include "utility/src/unicode/UnicodeAvx512.h"

namespace brindle::utility::impl {

UnicodeKernels const* AVX512UnicodeKernels() noexcept {
#if defined(__x86_64__)
    static constexpr UnicodeKernels kKernels = {"AVX-512", avx512::MeasureUTF16, avx512::EncodeUTF8,
                                                avx512::CountUTF16, avx512::DecodeUTF8};
    // The answers include whether the system preserves the registers. The call is needed for the
    // same reason as in AVX2UnicodeKernels.
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
        __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2") &&
        __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
        __builtin_cpu_supports("popcnt")) {
        return &kKernels;
    }
#endif
    return nullptr;
}

} // namespace brindle::utility::impl
