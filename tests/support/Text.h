#pragma once

#include <brindle/utility/TextTypes.h>
#include <brindle/utility/Unicode.h>

#include <cstdint>
#include <string>

// Converts between the library's text types and `std::string`, in which tests write their texts.
namespace brindle::tests {

inline UTF8String AsUTF8(std::string const& inText) {
    return {inText.begin(), inText.end()};
}

inline UTF16String Wide(std::string const& inText) {
    return utility::UTF8to16(AsUTF8(inText));
}

inline std::string Narrow(UTF8String const& inText) {
    return {inText.begin(), inText.end()};
}

inline std::string Narrow(UTF16String const& inText) {
    return Narrow(utility::UTF16to8(inText));
}

inline std::uint8_t const* Bytes(std::string const& inText) {
    return reinterpret_cast<std::uint8_t const*>(inText.data());
}

} // namespace brindle::tests
