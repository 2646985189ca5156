#include "proplist/src/model/ValueElements.h"

#include "utility/src/base/CharConversions.h"

#include <brindle/xml/ReservedCharacters.h>

#include <charconv>
#include <type_traits>

namespace brindle::proplist::impl {

template <typename T>
void AppendNumber(UTF8String& ioText, T inNumber, [[maybe_unused]] NumberDigits inDigits) {
    char text[32];
    std::to_chars_result result;
    if constexpr (std::is_floating_point_v<T>) {
        // The general format with six digits is what a stream writes by default.
        constexpr auto kGeneral = std::chars_format::general;
        result = inDigits == NumberDigits::kExact
                     ? utility::ToChars(text, text + sizeof text, inNumber, kGeneral)
                     : utility::ToChars(text, text + sizeof text, inNumber, kGeneral, 6);
    } else {
        result = std::to_chars(text, text + sizeof text, inNumber);
    }
    AppendText(ioText, {text, static_cast<std::size_t>(result.ptr - text)});
}

#define BRN_INSTANTIATE(Name, T, ...) template void AppendNumber(UTF8String&, T, NumberDigits);
BRN_PROPERTY_NUMBER_TYPES(BRN_INSTANTIATE)
#undef BRN_INSTANTIATE

void AppendElement(UTF8String& ioText, bool inFlag, NumberDigits) {
    AppendText(ioText, inFlag ? "<true/>\n" : "<false/>\n");
}

void AppendElement(UTF8String& ioText, UTF8String const& inText, NumberDigits) {
    AppendText(ioText, ElementTags<UTF8String>::kStart);
    xml::utils::EncodeReservedCharacters(inText, ioText);
    AppendText(ioText, ElementTags<UTF8String>::kEnd);
}

void AppendElement(UTF8String& ioText, UTF16String const& inText, NumberDigits) {
    AppendText(ioText, ElementTags<UTF16String>::kStart);
    xml::utils::EncodeReservedCharacters(utility::UTF16to8(inText), ioText);
    AppendText(ioText, ElementTags<UTF16String>::kEnd);
}

} // namespace brindle::proplist::impl
