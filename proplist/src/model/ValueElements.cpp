#include "proplist/src/model/ValueElements.h"

#include <brindle/xml/ReservedCharacters.h>

#include <charconv>
#include <type_traits>

namespace brindle::proplist::impl {

template <typename T>
void AppendNumber(UTF8String& ioText, T inNumber) {
    char text[32];
    std::to_chars_result result;
    if constexpr (std::is_floating_point_v<T>) {
        // The general format with six digits is what a stream writes by default.
        result = std::to_chars(text, text + sizeof text, inNumber, std::chars_format::general, 6);
    } else {
        result = std::to_chars(text, text + sizeof text, inNumber);
    }
    AppendText(ioText, {text, static_cast<std::size_t>(result.ptr - text)});
}

template void AppendNumber(UTF8String&, std::uint16_t);
template void AppendNumber(UTF8String&, std::uint32_t);
template void AppendNumber(UTF8String&, std::int32_t);
template void AppendNumber(UTF8String&, std::int64_t);
template void AppendNumber(UTF8String&, std::uint64_t);
template void AppendNumber(UTF8String&, float);
template void AppendNumber(UTF8String&, double);

void AppendElement(UTF8String& ioText, bool inFlag) {
    AppendText(ioText, inFlag ? "<true/>\n" : "<false/>\n");
}

void AppendElement(UTF8String& ioText, UTF8String const& inText) {
    AppendText(ioText, kTags<UTF8String>.start);
    xml::utils::EncodeReservedCharacters(inText, ioText);
    AppendText(ioText, kTags<UTF8String>.end);
}

void AppendElement(UTF8String& ioText, UTF16String const& inText) {
    AppendText(ioText, kTags<UTF16String>.start);
    xml::utils::EncodeReservedCharacters(utility::UTF16to8(inText), ioText);
    AppendText(ioText, kTags<UTF16String>.end);
}

} // namespace brindle::proplist::impl
