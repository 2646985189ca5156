#include "utility/src/unicode/UnicodeAvx2.h"

namespace brindle::utility::impl {

UnicodeKernels const* AVX2UnicodeKernels() noexcept {
#if defined(__x86_64__)
    static constexpr UnicodeKernels kKernels = {"AVX2", avx2::MeasureUTF16, avx2::EncodeUTF8,
                                                avx2::CountUTF16, avx2::DecodeUTF8};
    // A static constructor of another library may convert text before the one that initialises the
    // compiler's processor data has run.
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt")) {
        return &kKernels;
    }
#endif
    return nullptr;
}

} // namespace brindle::utility::impl
