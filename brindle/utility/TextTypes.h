#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace brindle {

/// Text of UTF-16 code units: one element is one unit, a surrogate pair is two. Units compare as
/// unsigned numbers; there is no normalisation and no byte-order mark.
using UTF16String = std::basic_string<std::uint16_t>;

/// Text of UTF-8 code units (bytes): the form in which text goes to streams, XML and files.
using UTF8String = std::basic_string<std::uint8_t>;

inline namespace literals {

/// `u"text"_utf16` is a `UTF16String`; a NUL inside the literal is kept.
inline UTF16String operator""_utf16(char16_t const* inText, std::size_t inLength) {
    return UTF16String(inText, inText + inLength);
}

/// `"text"_utf8` is a `UTF8String` of the literal's bytes; a NUL inside the literal is kept.
inline UTF8String operator""_utf8(char const* inText, std::size_t inLength) {
    return UTF8String(inText, inText + inLength);
}

} // namespace literals

} // namespace brindle
