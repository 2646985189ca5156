#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <string>

namespace brindle::filesupport {

// The wire form of values: a stored format, the same on every machine, without header, tag or
// alignment. Every byte goes through `Put` or `Get`, and what these throw goes to the caller: bytes
// written by then stay written, a number not wholly read leaves its target alone. Who needs all or
// nothing on the wire writes to memory first.

/// A `bool` is one byte, 0 or 1; read, every byte but 0 is true. Integers have their own width,
/// most significant byte first, in two's complement: signed and unsigned integers of one width read
/// each other.
BRN_API OByteStream& operator<<(OByteStream& outStream, bool const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, char const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, std::int8_t const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, std::uint8_t const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, std::int16_t const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, std::uint16_t const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, std::int32_t const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, std::uint32_t const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, std::int64_t const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, std::uint64_t const& inValue);

BRN_API IByteStream& operator>>(IByteStream& inStream, bool& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, char& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, std::int8_t& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, std::uint8_t& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, std::int16_t& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, std::uint16_t& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, std::int32_t& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, std::uint32_t& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, std::int64_t& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, std::uint64_t& outValue);

/// A string is its length as a 16-bit integer, then its characters or code units. One of more than
/// 65535 is refused with `byte_stream_exception` before a byte is written. When reading ends early,
/// the target holds the characters so far.
BRN_API OByteStream& operator<<(OByteStream& outStream, std::string const& inText);
BRN_API OByteStream& operator<<(OByteStream& outStream, UTF16String const& inText);

BRN_API IByteStream& operator>>(IByteStream& inStream, std::string& outText);
BRN_API IByteStream& operator>>(IByteStream& inStream, UTF16String& outText);

/// A floating value is an 8-bit string: its decimal text with up to 36 significant digits in the
/// classic locale, whatever locale the process has. Every finite value comes back exactly.
///
/// Text that is no number leaves the target as the extraction from a standard stream does: empty
/// and blank text leaves it alone, other text (infinities and NaNs among it) makes it 0, and a
/// number out of range the nearest finite value.
BRN_API OByteStream& operator<<(OByteStream& outStream, float const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, double const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, long double const& inValue);

BRN_API IByteStream& operator>>(IByteStream& inStream, float& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, double& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, long double& outValue);

/// Copies bytes from the position of `inStream`: `Length()` of them if that is not 0, where an
/// earlier end is an `eof_error` after the bytes so far were written; otherwise all up to the end.
BRN_API OByteStream& operator<<(OByteStream& outStream, IByteStream& inStream);

/// A pointer, a string literal among them, would go out as a `bool`.
OByteStream& operator<<(OByteStream& outStream, void const* inPointer) = delete;

} // namespace brindle::filesupport
