#include <brindle/utility/TextTypes.h>

#include "utility/src/unicode/UnicodeAssign.h"

#include <brindle/utility/TextConversions.h>

#include <ostream>

namespace brindle {

inline namespace literals {

UTF16String operator""_utf16(char const* inText, std::size_t inLength) {
    UTF16String text;
    utility::impl::AssignUTF8to16(inText, inLength, text);
    return text;
}

} // namespace literals

} // namespace brindle

std::ostream& std::operator<<(std::ostream& ioStream, brindle::UTF16String const& inText) {
    return ioStream << brindle::utility::ToStd(inText);
}

std::ostream& std::operator<<(std::ostream& ioStream, brindle::UTF8String const& inText) {
    return ioStream << brindle::utility::View(inText);
}
