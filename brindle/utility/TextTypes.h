#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace brindle {

/// Text in UTF-16: one element is one code unit, so a surrogate pair is two elements. Units compare
/// as unsigned numbers. There is no normalisation and no byte-order mark.
using UTF16String = std::basic_string<std::uint16_t>;

/// Text in UTF-8: one element is one byte. Streams, XML and files take text in this form.
using UTF8String = std::basic_string<std::uint8_t>;

inline namespace literals {

/// `u"text"_utf16` is a `UTF16String`. A NUL inside the literal is kept.
[[nodiscard]] inline UTF16String operator""_utf16(char16_t const* inText, std::size_t inLength) {
    return UTF16String(inText, inText + inLength);
}

/// `"text"_utf8` is a `UTF8String` of the literal's bytes. A NUL inside the literal is kept.
[[nodiscard]] inline UTF8String operator""_utf8(char const* inText, std::size_t inLength) {
    return UTF8String(inText, inText + inLength);
}

} // namespace literals

} // namespace brindle
