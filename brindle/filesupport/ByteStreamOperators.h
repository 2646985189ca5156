#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

namespace brindle::filesupport {

/// Inserts or extracts a value in its wire form, a stored format that is the same on every machine
/// and has no header, tag or alignment.
///
///     outStream << std::int32_t{7} << u"name"_utf16;
///     inStream >> number >> name;
///
/// A `bool` is one byte, 0 or 1; every other byte reads as true. An integer has its own width, in
/// two's complement with the most significant byte first, so signed and unsigned integers of one
/// width are interchangeable.
///
/// Every byte goes through `Put` or `Get`, whose exceptions reach the caller. By then part of the
/// value may have been written, but a number that was not completely read leaves its target as it
/// was. Write to a memory stream first if values must be written completely or not at all.
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

/// Extract what the operators above insert. If the data ends inside a value, `eof_error` is thrown
/// and the target keeps its value.
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

/// A string is its length as a 16-bit integer, followed by its characters or code units. A string
/// of more than 65535 of them is refused with `byte_stream_exception` before a byte is written. If
/// the data ends inside a string, the target holds the characters before the end.
BRN_API OByteStream& operator<<(OByteStream& outStream, std::string const& inText);
BRN_API OByteStream& operator<<(OByteStream& outStream, UTF16String const& inText);

/// Extract what is inserted so.
BRN_API IByteStream& operator>>(IByteStream& inStream, std::string& outText);
BRN_API IByteStream& operator>>(IByteStream& inStream, UTF16String& outText);

/// A floating-point value is an 8-bit string: its decimal text with up to 36 significant digits in
/// the classic locale, whatever the program's locale is. Every finite value is read back exactly.
///
/// Other text has the same effect as its extraction from a standard stream: empty and blank text
/// leaves the target as it was, text that is not a number (also that of an infinity or a NaN) makes
/// it 0, and a number out of range makes it the nearest finite value.
BRN_API OByteStream& operator<<(OByteStream& outStream, float const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, double const& inValue);
BRN_API OByteStream& operator<<(OByteStream& outStream, long double const& inValue);

/// Extract what is inserted so.
BRN_API IByteStream& operator>>(IByteStream& inStream, float& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, double& outValue);
BRN_API IByteStream& operator>>(IByteStream& inStream, long double& outValue);

/// Copies bytes from the present position of `inStream`. If `Length()` is not 0, that many bytes
/// are copied, and if the input ends before, `eof_error` is thrown after the bytes before the end
/// were written. If `Length()` is 0, everything up to the end is copied. The bytes go through `Get`
/// and `Put`; only where no difference can be seen, as from a file to a file, are blocks copied.
/// `CopyBytes` copies blocks between all streams.
BRN_API OByteStream& operator<<(OByteStream& outStream, IByteStream& inStream);

/// The same from a stream that exists for this one statement.
inline OByteStream& operator<<(OByteStream& outStream, IByteStream&& inStream) {
    return outStream << inStream;
}

/// Insert into and extract from a stream that exists for this one statement, such as
/// `OPlatformByteStream(file) << value`.
template <typename Stream, typename Value,
          std::enable_if_t<std::is_base_of_v<OByteStream, Stream>, int> = 0>
OByteStream& operator<<(Stream&& outStream, Value&& inValue) {
    OByteStream& stream = outStream;
    return stream << std::forward<Value>(inValue);
}
template <typename Stream, typename Value,
          std::enable_if_t<std::is_base_of_v<IByteStream, Stream>, int> = 0>
IByteStream& operator>>(Stream&& inStream, Value& outValue) {
    IByteStream& stream = inStream;
    return stream >> outValue;
}

namespace impl {

template <typename T>
inline constexpr bool kHasNoWireForm =
    !std::is_convertible_v<T const&, double> && !std::is_convertible_v<T const&, std::string> &&
    !std::is_convertible_v<T const&, UTF16String> && !std::is_convertible_v<T const&, UTF8String>;
template <>
inline constexpr bool kHasNoWireForm<UTF8String> = true; // unless WireForm.h is included

/// What a value without a wire form converts to, to end the compilation with one readable message
/// instead of a list of operators that do not match.
struct NoWireForm {
    template <typename Value, std::enable_if_t<kHasNoWireForm<Value>, int> = 0>
    NoWireForm(Value const&) {
        static_assert(brindle::utility::impl::kNever<Value>,
                      "the value has no wire form; those of UTF8String, vectors, pairs, times, "
                      "identifiers, points and rectangles are in brindle/filesupport/WireForm.h");
    }
};

} // namespace impl

OByteStream& operator<<(OByteStream& outStream, impl::NoWireForm const& inValue);

/// A pointer, such as a string literal, would be written as a `bool`.
template <typename T>
OByteStream& operator<<(OByteStream& outStream, T const*) {
    static_assert(brindle::utility::impl::kNever<T>,
                  "a pointer has no wire form; text is written as std::string, or with _utf16");
    return outStream;
}
OByteStream& operator<<(OByteStream& outStream, void const* inPointer) = delete;

} // namespace brindle::filesupport
