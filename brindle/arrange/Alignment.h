#pragma once

#include <cstdint>

namespace brindle::arrange {

/// Where a group places content that does not fill its width. Any other value counts as left.
enum AlignmentHorizontal : std::int32_t {
    kAlignmentHorizontal_Left = 0,
    kAlignmentHorizontal_Centre = 1,
    kAlignmentHorizontal_Right = 2
};

/// Where a group places content that does not fill its height. Any other value counts as top.
enum AlignmentVertical : std::int32_t {
    kAlignmentVertical_Top = 0,
    kAlignmentVertical_Centre = 1,
    kAlignmentVertical_Bottom = 2
};

} // namespace brindle::arrange
