#pragma once

#include <brindle/proplist/PropertyTypes.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/utility/Unicode.h>

#include <cstddef>
#include <cstdint>
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

/// How many digits floating-point numbers are written with: six, as a stream of the classic locale
/// does, or the fewest that are read back as the same number. Both are read by every reader.
enum class NumberDigits : std::uint8_t { kSix, kExact };

/// Appends the number. Instantiated for the number types of properties.
template <typename T>
void AppendNumber(UTF8String& ioText, T inNumber, NumberDigits inDigits);

template <typename T>
void AppendElement(UTF8String& ioText, T const& inNumber, NumberDigits inDigits) {
    AppendText(ioText, ElementTags<T>::kStart);
    AppendNumber(ioText, inNumber, inDigits);
    AppendText(ioText, ElementTags<T>::kEnd);
}

void AppendElement(UTF8String& ioText, bool inFlag, NumberDigits);
void AppendElement(UTF8String& ioText, UTF8String const& inText, NumberDigits);
void AppendElement(UTF8String& ioText, UTF16String const& inText, NumberDigits);

} // namespace brindle::proplist::impl
