#include <brindle/utility/Guid.h>

#include <brindle/config/ErrorCodes.h>
#include <brindle/utility/StringStreams.h>

#include "platform/Uuid.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <istream>
#include <ostream>

namespace brindle::utility {

namespace {

constexpr std::size_t kTextLength = 36;
using Bytes = std::array<std::uint8_t, 16>;

/// Where the two digits of each byte stand in the text.
constexpr std::array<std::uint8_t, 16> kDigitPositions = {0,  2,  4,  6,  9,  11, 14, 16,
                                                          19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::array<std::uint8_t, 4> kHyphenPositions = {8, 13, 18, 23};

constexpr std::uint8_t kNoDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> MakeDigitValues() {
    std::array<std::uint8_t, 256> values{};
    for (auto& value : values) {
        value = kNoDigit;
    }
    for (std::uint8_t digit = 0; digit < 16; ++digit) {
        values[static_cast<std::uint8_t>("0123456789abcdef"[digit])] = digit;
        values[static_cast<std::uint8_t>("0123456789ABCDEF"[digit])] = digit;
    }
    return values;
}

constexpr std::array<std::uint8_t, 256> kDigitValues = MakeDigitValues();

/// The value of a digit in the lower bits; a higher bit is set for whatever else a unit may be.
constexpr std::uint32_t DigitValue(char inCharacter) {
    return kDigitValues[static_cast<std::uint8_t>(inCharacter)];
}

constexpr std::uint32_t DigitValue(std::uint16_t inUnit) {
    return kDigitValues[inUnit & 0xFF] | (inUnit & 0xFF00U);
}

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

/// All zero, and reported, unless the text has the length and the form.
template <typename Unit>
Guid Parsed(Unit const* inText, std::size_t inLength) {
    bool isAccepted = inLength == kTextLength;
    Bytes bytes{};
    if (isAccepted) {
        std::uint32_t seen = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            auto const high = DigitValue(inText[kDigitPositions[i]]);
            auto const low = DigitValue(inText[kDigitPositions[i] + 1]);
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

} // namespace

Guid::Guid(char const* inText)
    : Guid(Parsed(inText, inText != nullptr ? ::strnlen(inText, kTextLength + 1) : 0)) {}

Guid::Guid(std::basic_string<char> const& inText) : Guid(Parsed(inText.data(), inText.size())) {}

Guid::Guid(UTF16String const& inText)
    : Guid(Parsed(inText.data(), inText.size() > kTextLength && inText[kTextLength] == 0
                                     ? kTextLength
                                     : inText.size())) {}

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

oUTF16StringStream& operator<<(oUTF16StringStream& ioStream, Guid const& inGuid) {
    static_cast<std::basic_ostream<std::uint16_t>&>(ioStream) << inGuid.AsString();
    return ioStream;
}

std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream, Guid const& inGuid) {
    char text[kTextLength + 1] = {};
    Format(inGuid, text);
    return ioStream << text;
}

iUTF16StringStream& operator>>(iUTF16StringStream& ioStream, Guid& outGuid) {
    UTF16String word;
    if (static_cast<std::basic_istream<std::uint16_t>&>(ioStream) >> word) {
        outGuid = Guid(word);
    }
    return ioStream;
}

std::basic_istream<char>& operator>>(std::basic_istream<char>& ioStream, Guid& outGuid) {
    std::string word;
    if (ioStream >> word) {
        outGuid = Guid(word);
    }
    return ioStream;
}

} // namespace brindle::utility
