#pragma once

#include <brindle/proplist/PropertyTypes.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/utility/Unicode.h>

#include <cstddef>
#include <string_view>

/// The XML elements of values: "<float>0.5</float>\n", "<true/>\n".
namespace brindle::proplist::impl {

/// The tags of a value's element, and the empty element that stands for the type alone.
template <typename T>
struct ElementTags;

#define BRN_TAGS(Name, T, inNumber, inArrayNumber, inName, inElement, inAttributes)                \
    template <>                                                                                    \
    struct ElementTags<T> {                                                                        \
        static constexpr std::string_view kStart = "<" inElement inAttributes ">";                 \
        static constexpr std::string_view kEmpty = "<" inElement inAttributes "/>";                \
        static constexpr std::string_view kEnd = "</" inElement ">\n";                             \
    };
BRN_PROPERTY_TYPES(BRN_TAGS)
#undef BRN_TAGS

inline void AppendText(UTF8String& ioText, std::string_view inText) {
    ioText.append(utility::AsciiToUTF8Impl(inText.data()), inText.size());
}

/// Appends the number as a stream of the classic locale would write it. Instantiated for the number
/// types of properties.
template <typename T>
void AppendNumber(UTF8String& ioText, T inNumber);

template <typename T>
void AppendElement(UTF8String& ioText, T const& inNumber) {
    AppendText(ioText, ElementTags<T>::kStart);
    AppendNumber(ioText, inNumber);
    AppendText(ioText, ElementTags<T>::kEnd);
}

void AppendElement(UTF8String& ioText, bool inFlag);
void AppendElement(UTF8String& ioText, UTF8String const& inText);
void AppendElement(UTF8String& ioText, UTF16String const& inText);

} // namespace brindle::proplist::impl
