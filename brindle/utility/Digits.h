#pragma once

#include <array>
#include <cstdint>

namespace brindle::utility {

/// True for "0" to "9", whatever type of character holds them.
template <typename Character>
constexpr bool IsDigit(Character inCharacter) noexcept {
    return inCharacter >= '0' && inCharacter <= '9';
}

/// The value of each byte as a hexadecimal digit of either case; 0xFF for a byte that is none.
inline constexpr std::array<std::uint8_t, 256> kHexDigitValues = [] {
    std::array<std::uint8_t, 256> values{};
    for (auto& value : values) {
        value = 0xFF;
    }
    for (std::uint8_t digit = 0; digit < 16; ++digit) {
        values[static_cast<std::uint8_t>("0123456789abcdef"[digit])] = digit;
        values[static_cast<std::uint8_t>("0123456789ABCDEF"[digit])] = digit;
    }
    return values;
}();

/// The value of a hexadecimal digit of either case, 0 to 15. For any other character a bit above
/// the lowest four is set, so the values of several characters can be checked by one `|`.
constexpr std::uint32_t HexDigitValue(std::uint8_t inByte) noexcept {
    return kHexDigitValues[inByte];
}

/// For a `char`, as the unsigned byte that it is.
constexpr std::uint32_t HexDigitValue(char inCharacter) noexcept {
    return HexDigitValue(static_cast<std::uint8_t>(inCharacter));
}

/// For a unit of UTF-16; one above 0xFF is no digit.
constexpr std::uint32_t HexDigitValue(std::uint16_t inUnit) noexcept {
    return kHexDigitValues[inUnit & 0xFF] | (inUnit & 0xFF00U);
}

} // namespace brindle::utility
