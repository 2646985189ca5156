#include <brindle/utility/Unicode.h>

#include "utility/src/unicode/UnicodeAssign.h"
#include "utility/src/unicode/UnicodeConversion.h"

#include <cstring>

namespace brindle::utility {

using impl::BestUnicodeKernels;

void impl::AssignUTF8to16(char const* inText, std::size_t inCount, UTF16String& outText) {
    AssignWith(BestUnicodeKernels(), AsciiToUTF8Impl(inText), inCount, outText);
}

std::size_t impl::AppendUTF8to16(std::uint8_t const* inText, std::size_t inCount,
                                 UTF16String& ioText) {
    return AppendWith(BestUnicodeKernels(), inText, inCount, ioText);
}

UTF8String UTF16to8(UTF16String const& inText) {
    return impl::EncodeWith(BestUnicodeKernels(), inText.data(), inText.size());
}

UTF8String UTF16to8(std::uint16_t const* inText) {
    return impl::EncodeWith(BestUnicodeKernels(), inText,
                            std::char_traits<std::uint16_t>::length(inText));
}

UTF16String UTF8to16(UTF8String const& inText) {
    return impl::DecodeWith(BestUnicodeKernels(), inText.data(), inText.size());
}

UTF16String AsciiToUTF16(char const* inText) {
    return impl::DecodeWith(BestUnicodeKernels(), AsciiToUTF8Impl(inText), std::strlen(inText));
}

} // namespace brindle::utility
