#include "utility/src/UnicodeKernels.h"

namespace brindle::utility::impl {

UnicodeKernels const* AVX2UnicodeKernels() noexcept {
    return nullptr;
}

} // namespace brindle::utility::impl
