#include "tests/utility/UnicodeModel.h"
#include "utility/src/unicode/UnicodeKernels.h"

#include <brindle/utility/Unicode.h>

#include <cstdlib>
#include <cstring>

using namespace brindle;
using namespace brindle::utility;

namespace {

void Require(bool inIsTrue) {
    if (!inIsTrue) {
        std::abort();
    }
}

} // namespace

/// The input is the units of the text in the machine's byte order. An odd last byte is ignored.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    UTF16String text(inSize / 2, 0);
    if (!text.empty()) {
        std::memcpy(text.data(), inData, text.size() * 2);
    }

    UTF8String const bytes = UTF16to8(text);
    Require(bytes == model::UTF16to8(text));
    UTF16String const untilNul = text.c_str();
    Require(UTF16to8(text.c_str()) == model::EncodeAll(untilNul));
    if (untilNul.size() == text.size()) {
        Require(UTF8to16(bytes) == text);
    }

    for (impl::UnicodeKernels const* const kernels : impl::AllUnicodeKernels()) {
        if (kernels != nullptr) {
            UTF8String buffer(3 * text.size() + impl::UnicodeKernels::kSlack, 0);
            buffer.resize(kernels->EncodeUTF8(text.data(), text.size(), buffer.data()));
            Require(buffer == model::EncodeAll(text));
        }
    }
    return 0;
}
