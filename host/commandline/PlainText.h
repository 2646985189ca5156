#pragma once

#include <brindle/utility/TextTypes.h>
#include <brindle/utility/Unicode.h>

#include <charconv>
#include <string>

/// Converts text and numbers to the bytes that the command writes.
namespace brindle::host {

inline std::string PlainText(UTF8String const& inText) {
    return {inText.begin(), inText.end()};
}

inline std::string PlainText(UTF16String const& inText) {
    return PlainText(utility::UTF16to8(inText));
}

/// A number in the shortest form that reads back as the same value, in any locale.
template <typename Number>
std::string NumberText(Number inNumber) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, inNumber).ptr};
}

} // namespace brindle::host
