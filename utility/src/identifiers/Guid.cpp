#include <brindle/utility/Guid.h>

#include <brindle/config/ErrorCodes.h>
#include <brindle/utility/StringStreams.h>

#include "platform/Uuid.h"
#include <brindle/utility/Digits.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <istream>
#include <ostream>
#include <string_view>

namespace brindle::utility {

namespace {

constexpr std::size_t kTextLength = 36;
using Bytes = std::array<std::uint8_t, 16>;

/// The position of the two digits of each byte in the text.
constexpr std::array<std::uint8_t, 16> kDigitPositions = {0,  2,  4,  6,  9,  11, 14, 16,
                                                          19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::array<std::uint8_t, 4> kHyphenPositions = {8, 13, 18, 23};

constexpr Guid FromBytes(Bytes const& b) {
    return Guid(static_cast<std::uint32_t>(b[0] << 24U | b[1] << 16U | b[2] << 8U | b[3]),
                static_cast<std::uint16_t>(b[4] << 8U | b[5]),
                static_cast<std::uint16_t>(b[6] << 8U | b[7]), b[8], b[9], b[10], b[11], b[12],
                b[13], b[14], b[15]);
}

constexpr Bytes ToBytes(Guid const& inGuid) {
    _GUID const& value = inGuid.GetGUID();
    Bytes bytes{};
    for (unsigned i = 0; i < 4; ++i) {
        bytes[i] = static_cast<std::uint8_t>(value.Data1 >> (24 - 8 * i));
    }
    for (unsigned i = 0; i < 2; ++i) {
        bytes[4 + i] = static_cast<std::uint8_t>(value.Data2 >> (8 - 8 * i));
        bytes[6 + i] = static_cast<std::uint8_t>(value.Data3 >> (8 - 8 * i));
    }
    for (unsigned i = 0; i < 8; ++i) {
        bytes[8 + i] = value.Data4[i];
    }
    return bytes;
}

/// Parses the text, or reports it and returns the Guid that is all zero.
template <typename Unit>
Guid Parsed(Unit const* inText, std::size_t inLength) {
    bool isAccepted = inLength == kTextLength;
    Bytes bytes{};
    if (isAccepted) {
        std::uint32_t seen = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            auto const high = HexDigitValue(inText[kDigitPositions[i]]);
            auto const low = HexDigitValue(inText[kDigitPositions[i] + 1]);
            seen |= high | low;
            bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
        }
        isAccepted = seen < 16;
        for (auto const position : kHyphenPositions) {
            isAccepted &= inText[position] == '-';
        }
    }
    if (!isAccepted) {
        config::ThrowError(config::kError_GuidMalformed);
        return Guid();
    }
    return FromBytes(bytes);
}

/// The length that counts: 16-bit text ends before a NUL, as in the conversion to UTF-8.
template <typename Unit>
std::size_t LengthOf(std::basic_string<Unit> const& inText) {
    bool const endsAtNul =
        sizeof(Unit) == 2 && inText.size() > kTextLength && inText[kTextLength] == 0;
    return endsAtNul ? kTextLength : inText.size();
}

/// The two digits of every byte.
template <typename Unit>
constexpr std::array<std::array<Unit, 2>, 256> MakeDigitPairs() {
    constexpr char kDigits[] = "0123456789abcdef";
    std::array<std::array<Unit, 2>, 256> pairs{};
    for (std::size_t byte = 0; byte < pairs.size(); ++byte) {
        pairs[byte] = {static_cast<Unit>(kDigits[byte >> 4]),
                       static_cast<Unit>(kDigits[byte & 0xF])};
    }
    return pairs;
}

/// Writes the 36 units of the text.
template <typename Unit>
void Format(Guid const& inGuid, Unit* outText) {
    static constexpr auto kDigitPairs = MakeDigitPairs<Unit>();
    Bytes const bytes = ToBytes(inGuid);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::memcpy(outText + kDigitPositions[i], &kDigitPairs[bytes[i]], 2 * sizeof(Unit));
    }
    for (auto const position : kHyphenPositions) {
        outText[position] = '-';
    }
}

template <typename Unit>
std::basic_ostream<Unit>& Insert(std::basic_ostream<Unit>& ioStream, Guid const& inGuid) {
    Unit text[kTextLength];
    Format(inGuid, text);
    return ioStream << std::basic_string_view<Unit>(text, kTextLength);
}

template <typename Unit>
std::basic_istream<Unit>& Extract(std::basic_istream<Unit>& ioStream, Guid& outGuid) {
    std::basic_string<Unit> word;
    if (ioStream >> word) {
        outGuid = Parsed(word.data(), LengthOf(word));
    }
    return ioStream;
}

} // namespace

Guid::Guid(char const* inText)
    : Guid(Parsed(inText, inText != nullptr ? ::strnlen(inText, kTextLength + 1) : 0)) {}

Guid::Guid(std::basic_string<char> const& inText) : Guid(Parsed(inText.data(), inText.size())) {}

Guid::Guid(UTF16String const& inText) : Guid(Parsed(inText.data(), LengthOf(inText))) {}

Guid Guid::CreateUnique() {
    auto const bytes = platform::CreateUuid();
    if (!bytes) {
        config::ThrowError(config::kError_GuidCreation);
        return Guid();
    }
    return FromBytes(bytes.value);
}

UTF16String Guid::AsString() const {
    UTF16String text(kTextLength, 0);
    Format(*this, text.data());
    return text;
}

std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream, Guid const& inGuid) {
    return Insert(ioStream, inGuid);
}

std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                              Guid const& inGuid) {
    return Insert(ioStream, inGuid);
}

std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                             Guid const& inGuid) {
    return Insert(ioStream, inGuid);
}

oUTF16StringStream& operator<<(oUTF16StringStream& ioStream, Guid const& inGuid) {
    Insert<std::uint16_t>(ioStream, inGuid);
    return ioStream;
}

std::basic_istream<char>& operator>>(std::basic_istream<char>& ioStream, Guid& outGuid) {
    return Extract(ioStream, outGuid);
}

std::basic_istream<std::uint16_t>& operator>>(std::basic_istream<std::uint16_t>& ioStream,
                                              Guid& outGuid) {
    return Extract(ioStream, outGuid);
}

std::basic_istream<std::uint8_t>& operator>>(std::basic_istream<std::uint8_t>& ioStream,
                                             Guid& outGuid) {
    return Extract(ioStream, outGuid);
}

iUTF16StringStream& operator>>(iUTF16StringStream& ioStream, Guid& outGuid) {
    Extract<std::uint16_t>(ioStream, outGuid);
    return ioStream;
}

} // namespace brindle::utility
