#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>

/// A simple and slow implementation of the text conversions, one code point at a time, which tests
/// and fuzz targets compare with the library.
namespace brindle::utility::model {

inline constexpr std::uint32_t kLeads[] = {0x00, 0xC0, 0xE0, 0xF0};

inline UTF8String Encode(std::uint32_t inValue) {
    int const trailing = (inValue >= 0x80) + (inValue >= 0x800) + (inValue >= 0x10000);
    UTF8String bytes(1, static_cast<std::uint8_t>(kLeads[trailing] + (inValue >> 6 * trailing)));
    for (int shift = 6 * trailing - 6; shift >= 0; shift -= 6) {
        bytes.push_back(static_cast<std::uint8_t>(0x80 + (inValue >> shift) % 64));
    }
    return bytes;
}

/// Encodes every unit, NUL like any other.
inline UTF8String EncodeAll(UTF16String const& inText) {
    UTF8String bytes;
    for (std::size_t i = 0; i < inText.size(); ++i) {
        std::uint32_t value = inText[i];
        if (value / 1024 == 0xD800 / 1024 && i + 1 < inText.size() &&
            inText[i + 1] / 1024 == 0xDC00 / 1024) {
            value = 0x10000 + (value - 0xD800) * 1024 + (inText[++i] - 0xDC00u);
        }
        bytes += Encode(value);
    }
    return bytes;
}

inline UTF8String UTF16to8(UTF16String const& inText) {
    UTF16String const text(inText.c_str());
    std::size_t const zeros = inText.size() <= 3 ? inText.size() - text.size() : 0;
    return EncodeAll(text) + UTF8String(zeros, 0);
}

/// `outConsumed` is the number of bytes before the place where the conversion stops.
inline UTF16String UTF8to16(UTF8String const& inText, std::size_t& outConsumed) {
    UTF16String units;
    for (outConsumed = 0; outConsumed < inText.size();) {
        std::uint8_t const lead = inText[outConsumed];
        int const trailing = (lead >= 0xC0) + (lead >= 0xE0) + (lead >= 0xF0);
        UTF8String const sequence =
            inText.substr(outConsumed, static_cast<std::size_t>(trailing) + 1);
        std::uint32_t value = lead - kLeads[trailing];
        for (std::size_t i = 1; i < sequence.size(); ++i) {
            value = value * 64 + sequence[i] % 64;
        }
        // A sequence is well-formed if it is what its value is encoded to.
        if (value > 0x10FFFF || sequence != Encode(value)) {
            break;
        }
        if (value >= 0x10000) {
            units.push_back(static_cast<std::uint16_t>(0xD800 + (value - 0x10000) / 1024));
            value = 0xDC00 + value % 1024;
        }
        units.push_back(static_cast<std::uint16_t>(value));
        outConsumed += sequence.size();
    }
    return units;
}

inline UTF16String UTF8to16(UTF8String const& inText) {
    std::size_t consumed = 0;
    return UTF8to16(inText, consumed);
}

} // namespace brindle::utility::model
