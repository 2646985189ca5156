#pragma once

#include <cstdint>

namespace brindle::arrange {

/// Where a group places content that does not fill its width. Any other value counts as left.
enum AlignmentHorizontal : std::int32_t {
    kAlignmentHorizontal_Left = 0,   ///< at the left edge
    kAlignmentHorizontal_Centre = 1, ///< with the same space on both sides
    kAlignmentHorizontal_Right = 2   ///< at the right edge
};

/// Where a group places content that does not fill its height. Any other value counts as top.
enum AlignmentVertical : std::int32_t {
    kAlignmentVertical_Top = 0,    ///< at the upper edge
    kAlignmentVertical_Centre = 1, ///< with the same space above and below
    kAlignmentVertical_Bottom = 2  ///< at the lower edge
};

} // namespace brindle::arrange
