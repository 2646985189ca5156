#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/utility/UnitFacets.h>

#include <iomanip>
#include <istream>
#include <ostream>
#include <string_view>
#include <utility>

/// @file
/// On streams of 16-bit units and of bytes the standard templates would insert a literal without
/// its suffix as an address or as a number. With these functions it is either inserted as text or
/// does not compile.
///
/// They are in namespace std because in the middle of a chain, where the static type is
/// `std::basic_ostream<std::uint16_t>`, no other namespace is searched.

#ifdef __GLIBCXX__ // in libc++ the standard's own operators do it

namespace brindle::utility::impl {

/// What `std::quoted` returns for the forms of 16-bit text.
using QuotedPointer = decltype(std::quoted(std::declval<std::uint16_t const*>()));
using QuotedView = decltype(std::quoted(std::declval<std::basic_string_view<std::uint16_t>>()));
using QuotedString = decltype(std::quoted(std::declval<UTF16String const&>()));
using QuotedVariable = decltype(std::quoted(std::declval<UTF16String&>()));

} // namespace brindle::utility::impl

namespace std {

/// Insert and extract `std::quoted` text. A field width applies to the text with its quotation
/// marks.
BRN_API basic_ostream<std::uint16_t>&
operator<<(basic_ostream<std::uint16_t>& ioStream,
           brindle::utility::impl::QuotedPointer const& inText);
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 brindle::utility::impl::QuotedView const& inText);
BRN_API basic_ostream<std::uint16_t>&
operator<<(basic_ostream<std::uint16_t>& ioStream,
           brindle::utility::impl::QuotedString const& inText);
BRN_API basic_ostream<std::uint16_t>&
operator<<(basic_ostream<std::uint16_t>& ioStream,
           brindle::utility::impl::QuotedVariable const& inText);
BRN_API basic_istream<std::uint16_t>&
operator>>(basic_istream<std::uint16_t>& ioStream,
           brindle::utility::impl::QuotedVariable const& outText);

} // namespace std

#endif

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

/// Insert text of the other type and of the standard library, converted as by `utility::Utf16` and
/// `utility::Utf8`.
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 brindle::UTF8String const& inText);
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 std::string_view inText);
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 std::u16string_view inText);
BRN_API basic_ostream<std::uint8_t>& operator<<(basic_ostream<std::uint8_t>& ioStream,
                                                brindle::UTF16String const& inText);
BRN_API basic_ostream<std::uint8_t>& operator<<(basic_ostream<std::uint8_t>& ioStream,
                                                std::string_view inText);

/// A stream of 16-bit units takes u"text", u"text"_utf16 and "text".
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&, wchar_t) = delete;
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&, wchar_t const*) = delete;
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&, char32_t) = delete;
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&, char32_t const*) = delete;
/// Convert it with `utility::UTF8to16`.
basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>&,
                                         std::uint8_t const*) = delete;

/// A stream of bytes takes "text" and text of the library's types.
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
