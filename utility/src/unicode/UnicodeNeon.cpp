#include "utility/src/unicode/UnicodeNeon.h"

namespace brindle::utility::impl {

UnicodeKernels const* NEONUnicodeKernels() noexcept {
#if BRN_NEON
    static constexpr UnicodeKernels kKernels = {"NEON", neon::MeasureUTF16, neon::EncodeUTF8,
                                                neon::CountUTF16, neon::DecodeUTF8};
    return &kKernels;
#else
    return nullptr;
#endif
}

} // namespace brindle::utility::impl
