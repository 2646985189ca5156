#pragma once

#include <algorithm>
#include <string_view>

namespace brindle::platform {

// Characters of ASCII, in a text of any unit type and whatever the locale.

template <typename Unit>
constexpr bool IsDigit(Unit inUnit) noexcept {
    return '0' <= inUnit && inUnit <= '9';
}

template <typename Unit>
constexpr Unit LowerAscii(Unit inUnit) noexcept {
    return 'A' <= inUnit && inUnit <= 'Z' ? static_cast<Unit>(inUnit + ('a' - 'A')) : inUnit;
}

/// The value of a hexadecimal digit in either case, -1 for any other character.
template <typename Unit>
constexpr int HexDigitValue(Unit inUnit) noexcept {
    auto const lower = LowerAscii(inUnit);
    return IsDigit(lower) ? lower - '0' : 'a' <= lower && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Only the letters A to Z have a case here.
inline bool EqualsIgnoringCase(std::string_view inLHS, std::string_view inRHS) noexcept {
    return std::equal(
        inLHS.begin(), inLHS.end(), inRHS.begin(), inRHS.end(),
        [](char inLeft, char inRight) { return LowerAscii(inLeft) == LowerAscii(inRight); });
}

} // namespace brindle::platform
