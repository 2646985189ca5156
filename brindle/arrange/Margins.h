#pragma once

namespace brindle::arrange {

/// Space that is kept free at the four sides. A single number stands for all of them. A plain
/// value that is compared and not ordered.
struct Margins {
    /// The same space at all sides.
    constexpr Margins(float inAll = 0) noexcept
        : left(inAll), top(inAll), right(inAll), bottom(inAll) {}
    /// The sides clockwise from the left.
    constexpr Margins(float inLeft, float inTop, float inRight, float inBottom) noexcept
        : left(inLeft), top(inTop), right(inRight), bottom(inBottom) {}

    float left;   ///< free space to the left
    float top;    ///< free space above
    float right;  ///< free space to the right
    float bottom; ///< free space below
};

/// Compares the four sides; a NaN equals nothing.
constexpr bool operator==(Margins const& inLHS, Margins const& inRHS) noexcept {
    return inLHS.left == inRHS.left && inLHS.top == inRHS.top && inLHS.right == inRHS.right &&
           inLHS.bottom == inRHS.bottom;
}

constexpr bool operator!=(Margins const& inLHS, Margins const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

} // namespace brindle::arrange
