#include "tests/utility/UnicodeModel.h"
#include "utility/src/unicode/UnicodeKernels.h"

#include <brindle/utility/Unicode.h>

#include <cstdlib>

using namespace brindle;
using namespace brindle::utility;

namespace {

void Require(bool inIsTrue) {
    if (!inIsTrue) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    UTF8String const bytes(inData, inSize);
    std::size_t consumed = 0;
    UTF16String const text = model::UTF8to16(bytes, consumed);
    Require(UTF8to16(bytes) == text);
    Require(AsciiToUTF16(reinterpret_cast<char const*>(bytes.c_str())) ==
            model::UTF8to16(UTF8String(bytes.c_str())));

    for (impl::UnicodeKernels const* const kernels : impl::AllUnicodeKernels()) {
        if (kernels != nullptr) {
            UTF16String buffer(inSize + impl::UnicodeKernels::kSlack, 0);
            auto const progress = kernels->DecodeUTF8(inData, inSize, buffer.data());
            buffer.resize(progress.produced);
            Require(progress.consumed == consumed && buffer == text);
        }
    }
    return 0;
}
