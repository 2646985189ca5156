#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <iomanip>
#include <istream>
#include <ostream>

// What the standard templates would do wrong on streams of 16-bit units and of bytes: there a
// literal without its suffix is an address or a number. Every such insertion either works or does
// not compile.
//
// These functions are in namespace std because only that namespace is searched in the middle of a
// chain, where the static type is `std::basic_ostream<std::uint16_t>`.

namespace std {

/// Inserts one unit.
template <>
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 char inCharacter);
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 char16_t inUnit);

/// Inserts NUL-terminated UTF-16. A null pointer makes the stream bad.
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 char16_t const* inText);

/// Insert and extract text in quotation marks, with the width of the whole.
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 decltype(quoted(declval<std::uint16_t const*>()))
                                                     const& inQuoted);
BRN_API basic_ostream<std::uint16_t>&
operator<<(basic_ostream<std::uint16_t>& ioStream,
           decltype(quoted(declval<brindle::UTF16String const&>())) const& inQuoted);
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 decltype(quoted(declval<brindle::UTF16String&>()))
                                                     const& inQuoted);
BRN_API basic_ostream<std::uint16_t>&
operator<<(basic_ostream<std::uint16_t>& ioStream,
           decltype(quoted(declval<basic_string_view<std::uint16_t>>())) const& inQuoted);
BRN_API basic_istream<std::uint16_t>& operator>>(basic_istream<std::uint16_t>& ioStream,
                                                 decltype(quoted(declval<brindle::UTF16String&>()))
                                                     const& outQuoted);

/// A stream of 16-bit units takes u"text", u"text"_utf16 and "text".
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&, wchar_t) = delete;
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&, wchar_t const*) = delete;
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&, char32_t) = delete;
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&, char32_t const*) = delete;
/// Convert it with `utility::UTF8to16`.
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&,
                                         std::uint8_t const*) = delete;

/// A stream of bytes takes "text" and "text"_utf8.
basic_ostream<std::uint8_t>& operator<<(basic_ostream<std::uint8_t>&, wchar_t) = delete;
basic_ostream<std::uint8_t>& operator<<(basic_ostream<std::uint8_t>&, wchar_t const*) = delete;
basic_ostream<std::uint8_t>& operator<<(basic_ostream<std::uint8_t>&, char32_t) = delete;
basic_ostream<std::uint8_t>& operator<<(basic_ostream<std::uint8_t>&, char32_t const*) = delete;
basic_ostream<std::uint8_t>& operator<<(basic_ostream<std::uint8_t>&, char16_t) = delete;
/// Convert it with `utility::UTF16to8`.
basic_ostream<std::uint8_t>& operator<<(basic_ostream<std::uint8_t>&, char16_t const*) = delete;
basic_ostream<std::uint8_t>& operator<<(basic_ostream<std::uint8_t>&,
                                        std::uint16_t const*) = delete;

} // namespace std
