#include <brindle/filesupport/ByteStreamOperators.h>

#include "utility/src/base/CharConversions.h"

#include <brindle/utility/Digits.h>

#include <charconv>
#include <cstddef>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>

namespace brindle::filesupport {

namespace {

template <typename Integer>
OByteStream& PutInteger(OByteStream& outStream, Integer inValue) {
    auto const bits = static_cast<std::make_unsigned_t<Integer>>(inValue);
    for (unsigned shift = 8 * sizeof(bits); shift != 0;) {
        shift -= 8;
        outStream.Put(static_cast<std::uint8_t>(bits >> shift));
    }
    return outStream;
}

template <typename Integer>
IByteStream& GetInteger(IByteStream& inStream, Integer& outValue) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof(Integer); ++i) {
        bits = bits << 8 | inStream.Get();
    }
    outValue = static_cast<Integer>(bits);
    return inStream;
}

template <typename String>
OByteStream& PutString(OByteStream& outStream, String const& inText) {
    if (inText.size() > std::numeric_limits<std::uint16_t>::max()) {
        throw byte_stream_exception();
    }
    auto const length = static_cast<std::uint16_t>(inText.size());
    PutInteger(outStream, length);
    // By index, because a text that is appended to itself is reallocated meanwhile.
    for (std::size_t i = 0; i < length; ++i) {
        PutInteger(outStream, inText[i]);
    }
    return outStream;
}

template <typename String>
IByteStream& GetString(IByteStream& inStream, String& outText) {
    outText.clear();
    std::uint16_t length = 0;
    GetInteger(inStream, length);
    for (; length != 0; --length) {
        typename String::value_type unit{};
        GetInteger(inStream, unit);
        outText.push_back(unit);
    }
    return inStream;
}

template <typename Float>
OByteStream& PutFloat(OByteStream& outStream, Float inValue) {
    // Room for 36 digits, the sign, the point, and either "0.000" or an exponent of up to 5 digits.
    char text[64];
    constexpr int kPrecision = 36;
    auto const result =
        utility::ToChars(text, text + sizeof text, inValue, std::chars_format::general, kPrecision);
    return PutString(outStream, std::string(text, result.ptr));
}

template <typename Float>
IByteStream& GetFloat(IByteStream& inStream, Float& outValue) {
    std::string text;
    GetString(inStream, text);
    // What operator<< writes of finite numbers. Some standard streams refuse subnormal numbers.
    char const* const end = text.data() + text.size();
    std::size_t const first = text[0] == '-' ? 1 : 0;
    Float value{};
    if (utility::IsDigit(text[first])) {
        auto const result = utility::FromChars(text.data(), end, value);
        if (result.ec == std::errc() && result.ptr == end) {
            outValue = value;
            return inStream;
        }
    }
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream >> outValue;
    return inStream;
}

} // namespace

OByteStream& operator<<(OByteStream& outStream, bool const& inValue) {
    return PutInteger(outStream, static_cast<std::uint8_t>(inValue));
}

OByteStream& operator<<(OByteStream& outStream, char const& inValue) {
    return PutInteger(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, std::int8_t const& inValue) {
    return PutInteger(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, std::uint8_t const& inValue) {
    return PutInteger(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, std::int16_t const& inValue) {
    return PutInteger(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, std::uint16_t const& inValue) {
    return PutInteger(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, std::int32_t const& inValue) {
    return PutInteger(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, std::uint32_t const& inValue) {
    return PutInteger(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, std::int64_t const& inValue) {
    return PutInteger(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, std::uint64_t const& inValue) {
    return PutInteger(outStream, inValue);
}

IByteStream& operator>>(IByteStream& inStream, bool& outValue) {
    outValue = inStream.Get() != 0;
    return inStream;
}

IByteStream& operator>>(IByteStream& inStream, char& outValue) {
    return GetInteger(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, std::int8_t& outValue) {
    return GetInteger(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, std::uint8_t& outValue) {
    return GetInteger(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, std::int16_t& outValue) {
    return GetInteger(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, std::uint16_t& outValue) {
    return GetInteger(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, std::int32_t& outValue) {
    return GetInteger(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, std::uint32_t& outValue) {
    return GetInteger(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, std::int64_t& outValue) {
    return GetInteger(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, std::uint64_t& outValue) {
    return GetInteger(inStream, outValue);
}

OByteStream& operator<<(OByteStream& outStream, std::string const& inText) {
    return PutString(outStream, inText);
}

OByteStream& operator<<(OByteStream& outStream, UTF16String const& inText) {
    return PutString(outStream, inText);
}

IByteStream& operator>>(IByteStream& inStream, std::string& outText) {
    return GetString(inStream, outText);
}

IByteStream& operator>>(IByteStream& inStream, UTF16String& outText) {
    return GetString(inStream, outText);
}

OByteStream& operator<<(OByteStream& outStream, float const& inValue) {
    return PutFloat(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, double const& inValue) {
    return PutFloat(outStream, inValue);
}

OByteStream& operator<<(OByteStream& outStream, long double const& inValue) {
    return PutFloat(outStream, inValue);
}

IByteStream& operator>>(IByteStream& inStream, float& outValue) {
    return GetFloat(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, double& outValue) {
    return GetFloat(inStream, outValue);
}

IByteStream& operator>>(IByteStream& inStream, long double& outValue) {
    return GetFloat(inStream, outValue);
}

} // namespace brindle::filesupport
