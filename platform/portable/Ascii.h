#pragma once

#include <algorithm>
#include <string_view>

namespace brindle::platform {

// Characters of ASCII, in a text of any unit type and whatever the locale.

template <typename Unit>
constexpr Unit LowerAscii(Unit inUnit) noexcept {
    return 'A' <= inUnit && inUnit <= 'Z' ? static_cast<Unit>(inUnit + ('a' - 'A')) : inUnit;
}

/// Only the letters A to Z have a case here.
inline bool EqualsIgnoringCase(std::string_view inLHS, std::string_view inRHS) noexcept {
    return std::equal(
        inLHS.begin(), inLHS.end(), inRHS.begin(), inRHS.end(),
        [](char inLeft, char inRight) { return LowerAscii(inLeft) == LowerAscii(inRight); });
}

} // namespace brindle::platform
