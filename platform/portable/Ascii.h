#pragma once

#include <algorithm>
#include <string_view>

namespace brindle::platform {

constexpr char LowerAscii(char inCharacter) noexcept {
    return 'A' <= inCharacter && inCharacter <= 'Z' ? static_cast<char>(inCharacter + ('a' - 'A'))
                                                    : inCharacter;
}

/// Only the letters A to Z have a case here.
inline bool EqualsIgnoringCase(std::string_view inLHS, std::string_view inRHS) noexcept {
    return std::equal(
        inLHS.begin(), inLHS.end(), inRHS.begin(), inRHS.end(),
        [](char inLeft, char inRight) { return LowerAscii(inLeft) == LowerAscii(inRight); });
}

} // namespace brindle::platform
