#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>
#include <brindle/utility/UnitInserters.h>

#include <istream>
#include <locale>
#include <ostream>
#include <sstream>
#include <streambuf>

/// @file
/// Streams of the library's text types. They insert and extract exactly what the `wchar_t` streams
/// (for 16-bit units) and the `char` streams (for bytes) do in the same locale. A new stream has
/// the global locale of that moment. A stream is used by one thread at a time.
///
/// A `std::uint16_t` is inserted as a number; use `put`, `'x'` or `u'x'` to write one unit. See
/// UnitInserters.h for the literals that can be inserted.

namespace brindle {

namespace utility {

/// A copy of `inBase` with the facets by which streams of 16-bit units and of bytes handle numbers
/// and classify characters. These facets rely on those that `inBase` has for `wchar_t` and `char`.
/// The stream classes below imbue such locales by themselves. Call this before imbuing a locale
/// through a reference to a base class or into a standard stream class of these unit types.
[[nodiscard]] BRN_API std::locale WithTextFacets(std::locale const& inBase);

} // namespace utility

/// An output stream of 16-bit units on a buffer that it does not own.
///
/// Beside the standard library: a `std::basic_ostream`, with its manipulators and state.
class UTF16OutputStream : public std::basic_ostream<std::uint16_t> {
public:
    /// A stream without a buffer; it is bad until `utility::SetStreamBuffer` gives it one.
    BRN_API UTF16OutputStream();
    /// Writes to the buffer, which must outlive the stream.
    BRN_API explicit UTF16OutputStream(std::basic_streambuf<std::uint16_t>* inBuffer);

    /// Moving would leave the buffer behind.
    UTF16OutputStream(UTF16OutputStream&&) = delete;
    UTF16OutputStream& operator=(UTF16OutputStream&&) = delete;

    /// Imbues `utility::WithTextFacets(inLocale)`, and returns the previous locale.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

/// Reads from a copy of a UTF-16 text.
///
///     iUTF16StringStream in(u"12 34"_utf16);
///     in >> width >> height;
///
/// Beside the standard library: a `std::basic_istringstream`, with its manipulators and state.
class iUTF16StringStream : public std::basic_istringstream<std::uint16_t> {
public:
    /// Copies the text, which may hold NULs.
    BRN_API explicit iUTF16StringStream(UTF16String const& inText);
    /// `inText` is NUL-terminated and not null.
    BRN_API explicit iUTF16StringStream(std::uint16_t const* inText);
    /// Takes the text, the position and the locale of the other, which may then only be destroyed
    /// or assigned to.
    BRN_API iUTF16StringStream(iUTF16StringStream&& inOther);
    BRN_API iUTF16StringStream& operator=(iUTF16StringStream&& inOther);

    /// Imbues `utility::WithTextFacets(inLocale)`, and returns the previous locale.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

/// Collects a UTF-16 text, which `str` returns.
///
///     oUTF16StringStream out;
///     out << width << " x " << height;
///
/// Beside the standard library: a `std::basic_ostringstream`, with its manipulators and state.
class oUTF16StringStream : public std::basic_ostringstream<std::uint16_t> {
public:
    BRN_API oUTF16StringStream();
    /// Takes the text, the position and the locale of the other, which may then only be destroyed
    /// or assigned to.
    BRN_API oUTF16StringStream(oUTF16StringStream&& inOther);
    BRN_API oUTF16StringStream& operator=(oUTF16StringStream&& inOther);

    /// Imbues `utility::WithTextFacets(inLocale)`, and returns the previous locale.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

/// Reads from a copy of a UTF-8 text.
///
/// Beside the standard library: a `std::basic_istringstream`, with its manipulators and state.
class iUTF8StringStream : public std::basic_istringstream<std::uint8_t> {
public:
    /// Copies the text, which may hold NULs.
    BRN_API explicit iUTF8StringStream(UTF8String const& inText);
    /// `inText` is NUL-terminated and not null.
    BRN_API explicit iUTF8StringStream(std::uint8_t const* inText);
    /// Takes the text, the position and the locale of the other, which may then only be destroyed
    /// or assigned to.
    BRN_API iUTF8StringStream(iUTF8StringStream&& inOther);
    BRN_API iUTF8StringStream& operator=(iUTF8StringStream&& inOther);

    /// Imbues `utility::WithTextFacets(inLocale)`, and returns the previous locale.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

/// Collects a UTF-8 text, which `str` returns.
///
/// Beside the standard library: a `std::basic_ostringstream`, with its manipulators and state.
class oUTF8StringStream : public std::basic_ostringstream<std::uint8_t> {
public:
    BRN_API oUTF8StringStream();
    /// Takes the text, the position and the locale of the other, which may then only be destroyed
    /// or assigned to.
    BRN_API oUTF8StringStream(oUTF8StringStream&& inOther);
    BRN_API oUTF8StringStream& operator=(oUTF8StringStream&& inOther);

    /// Imbues `utility::WithTextFacets(inLocale)`, and returns the previous locale.
    BRN_API std::locale imbue(std::locale const& inLocale);
};

} // namespace brindle
