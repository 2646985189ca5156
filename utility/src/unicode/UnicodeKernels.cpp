#include "utility/src/unicode/UnicodeKernels.h"

#include <algorithm>

namespace brindle::utility::impl {

std::array<UnicodeKernels const*, 4> AllUnicodeKernels() noexcept {
    return {AVX512UnicodeKernels(), AVX2UnicodeKernels(), NEONUnicodeKernels(),
            &kPortableUnicodeKernels};
}

UnicodeKernels const& BestUnicodeKernels() noexcept {
    static UnicodeKernels const* const S_kernelsP = [] {
        auto const all = AllUnicodeKernels();
        return *std::find_if(all.begin(), all.end(), [](auto each) { return each != nullptr; });
    }();
    return *S_kernelsP;
}

} // namespace brindle::utility::impl
