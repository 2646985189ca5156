#pragma once

#include <brindle/utility/TextTypes.h>
#include <brindle/utility/Unicode.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The XML elements of values: "<float>0.5</float>\n", "<true/>\n".
namespace brindle::proplist::impl {

/// The tags of the elements of a type. That of a type itself, where no value is told, is the start
/// tag closed in itself: "<bool/>".
struct ElementTags {
    std::string_view start;
    std::string_view end;
};

template <typename T>
constexpr ElementTags kTags{};
template <>
inline constexpr ElementTags kTags<UTF8String>{"<string>", "</string>\n"};
template <>
inline constexpr ElementTags kTags<UTF16String>{"<ustring>", "</ustring>\n"};
template <>
inline constexpr ElementTags kTags<bool>{"<bool>", ""};
template <>
inline constexpr ElementTags kTags<std::uint16_t>{"<int type='unsigned' size='16'>", "</int>\n"};
template <>
inline constexpr ElementTags kTags<std::uint32_t>{"<int type='unsigned' size='32'>", "</int>\n"};
template <>
inline constexpr ElementTags kTags<std::int32_t>{"<int type='signed' size='32'>", "</int>\n"};
template <>
inline constexpr ElementTags kTags<std::int64_t>{"<int type='signed' size='64'>", "</int>\n"};
template <>
inline constexpr ElementTags kTags<std::uint64_t>{"<int type='unsigned' size='64'>", "</int>\n"};
template <>
inline constexpr ElementTags kTags<float>{"<float>", "</float>\n"};
template <>
inline constexpr ElementTags kTags<double>{"<double>", "</double>\n"};

inline void AppendText(UTF8String& ioText, std::string_view inText) {
    ioText.append(utility::AsciiToUTF8Impl(inText.data()), inText.size());
}

/// Appends the number as a stream of the classic locale would write it. Instantiated for the number
/// types of a list.
template <typename T>
void AppendNumber(UTF8String& ioText, T inNumber);

template <typename T>
void AppendElement(UTF8String& ioText, T const& inNumber) {
    AppendText(ioText, kTags<T>.start);
    AppendNumber(ioText, inNumber);
    AppendText(ioText, kTags<T>.end);
}

void AppendElement(UTF8String& ioText, bool inFlag);
void AppendElement(UTF8String& ioText, UTF8String const& inText);
void AppendElement(UTF8String& ioText, UTF16String const& inText);

template <typename T>
void AppendEmptyElement(UTF8String& ioText) {
    AppendText(ioText, kTags<T>.start.substr(0, kTags<T>.start.size() - 1));
    AppendText(ioText, "/>");
}

} // namespace brindle::proplist::impl
