#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>
#include <optional>

/// The text conversions once more, one code point at a time and with no regard to speed: what the
/// tests and the fuzz targets hold the library to.
namespace brindle::utility::model {

inline bool IsBetween(std::uint32_t inValue, std::uint32_t inFirst, std::uint32_t inLast) {
    return inFirst <= inValue && inValue <= inLast;
}

inline void AppendUTF8(UTF8String& ioBytes, std::uint32_t inValue) {
    auto const append = [&](std::uint32_t inByte) {
        ioBytes.push_back(static_cast<std::uint8_t>(inByte));
    };
    auto const trailing = [&](std::uint32_t inDivisor) { append(0x80 + inValue / inDivisor % 64); };
    if (inValue < 0x80) {
        append(inValue);
    } else if (inValue < 0x800) {
        append(0xC0 + inValue / 64);
        trailing(1);
    } else if (inValue < 0x10000) {
        append(0xE0 + inValue / 4096);
        trailing(64);
        trailing(1);
    } else {
        append(0xF0 + inValue / 262144);
        trailing(4096);
        trailing(64);
        trailing(1);
    }
}

/// Every unit counts, NUL like any other.
inline UTF8String EncodeAll(UTF16String const& inText) {
    UTF8String bytes;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        std::uint32_t value = inText[i];
        if (IsBetween(value, 0xD800, 0xDBFF) && i + 1 < inText.size() &&
            IsBetween(inText[i + 1], 0xDC00, 0xDFFF)) {
            value = 0x10000 + (value - 0xD800) * 1024 + (inText[i + 1] - 0xDC00u);
            ++i;
        }
        AppendUTF8(bytes, value);
    }
    return bytes;
}

inline UTF8String UTF16to8(UTF16String const& inText) {
    UTF16String const text = inText.substr(0, inText.find(std::uint16_t{0}));
    UTF8String bytes = EncodeAll(text);
    if (inText.size() <= 3) {
        bytes.append(inText.size() - text.size(), 0);
    }
    return bytes;
}

/// The length of the sequence that `inLead` starts; nothing if it starts none.
inline std::optional<std::size_t> SequenceLength(std::uint8_t inLead) {
    if (inLead < 0x80) {
        return 1;
    }
    if (IsBetween(inLead, 0xC2, 0xDF)) {
        return 2;
    }
    if (IsBetween(inLead, 0xE0, 0xEF)) {
        return 3;
    }
    if (IsBetween(inLead, 0xF0, 0xF4)) {
        return 4;
    }
    return std::nullopt;
}

/// `outConsumed` is the count of bytes before the place where the conversion stops.
inline UTF16String UTF8to16(UTF8String const& inText, std::size_t& outConsumed) {
    UTF16String units;
    std::size_t& at = outConsumed;
    at = 0;
    while (at < inText.size()) {
        std::optional<std::size_t> const length = SequenceLength(inText[at]);
        if (!length || at + *length > inText.size()) {
            break;
        }
        static constexpr std::uint32_t kLeadOffset[] = {0, 0, 0xC0, 0xE0, 0xF0};
        static constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
        std::uint32_t value = inText[at] - kLeadOffset[*length];
        bool isWellFormed = true;
        for (std::size_t i = 1; i < *length; ++i) {
            isWellFormed = isWellFormed && IsBetween(inText[at + i], 0x80, 0xBF);
            value = value * 64 + inText[at + i] % 64;
        }
        if (!isWellFormed || !IsBetween(value, kLeast[*length], 0x10FFFF)) {
            break;
        }
        if (value >= 0x10000) {
            units.push_back(static_cast<std::uint16_t>(0xD800 + (value - 0x10000) / 1024));
            value = 0xDC00 + value % 1024;
        }
        units.push_back(static_cast<std::uint16_t>(value));
        at += *length;
    }
    return units;
}

inline UTF16String UTF8to16(UTF8String const& inText) {
    std::size_t consumed = 0;
    return UTF8to16(inText, consumed);
}

} // namespace brindle::utility::model
