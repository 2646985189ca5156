#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <istream>
#include <locale>
#include <ostream>
#include <sstream>
#include <streambuf>

// Streams of the library's text types. They insert and extract what the `wchar_t` streams (16-bit
// units) and the `char` streams (bytes) do in the same locale: numbers, text, manipulators,
// grouping, states. A new stream takes the global locale of the moment.
//
// As with the standard streams of any unit type, a `std::uint16_t` goes to a stream of 16-bit units
// as a number; `put` writes one unit. A stream belongs to one thread at a time.

namespace brindle {

namespace utility {

/// `inBase` with the facets that streams of 16-bit units and of bytes need to handle numbers and
/// classify characters; they do so by what `inBase` holds for `wchar_t` and `char`. `inBase` itself
/// does not change. The stream classes below imbue this by themselves; it is for those who imbue
/// through a reference to a base class, or use a standard stream class on these unit types.
BRN_API std::locale WithTextFacets(std::locale const& inBase);

} // namespace utility

/// An output stream of 16-bit units on a buffer that it does not own.
class UTF16OutputStream : public std::basic_ostream<std::uint16_t> {
public:
    /// Without a buffer the stream is bad: not usable until `utility::SetStreamBuffer`.
    BRN_API UTF16OutputStream();
    BRN_API explicit UTF16OutputStream(std::basic_streambuf<std::uint16_t>* inBuffer);

    /// Imbues `utility::WithTextFacets(inLocale)`, and returns the locale that was imbued before.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

/// Reads from a copy of a text of 16-bit units.
class iUTF16StringStream : public std::basic_istringstream<std::uint16_t> {
public:
    BRN_API explicit iUTF16StringStream(UTF16String const& inText);
    /// `inText` is NUL-terminated and not null.
    BRN_API explicit iUTF16StringStream(std::uint16_t const* inText);

    /// As for `UTF16OutputStream`.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

/// Collects a text of 16-bit units, for `str` to give.
class oUTF16StringStream : public std::basic_ostringstream<std::uint16_t> {
public:
    BRN_API oUTF16StringStream();

    /// As for `UTF16OutputStream`.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

/// Reads from a copy of a text of bytes.
class iUTF8StringStream : public std::basic_istringstream<std::uint8_t> {
public:
    BRN_API explicit iUTF8StringStream(UTF8String const& inText);
    /// `inText` is NUL-terminated and not null.
    BRN_API explicit iUTF8StringStream(std::uint8_t const* inText);

    /// As for `UTF16OutputStream`.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

/// Collects a text of bytes, for `str` to give.
class oUTF8StringStream : public std::basic_ostringstream<std::uint8_t> {
public:
    BRN_API oUTF8StringStream();

    /// As for `UTF16OutputStream`.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

} // namespace brindle

namespace std {

/// The general template would insert the number of the unit, because for an output stream a
/// `std::uint16_t` is a number.
template <>
BRN_API basic_ostream<std::uint16_t>& operator<<(basic_ostream<std::uint16_t>& ioStream,
                                                 char inCharacter);

} // namespace std
