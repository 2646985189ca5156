#pragma once

#include <brindle/geom/Rect.h>

#include <cstdint>

namespace brindle::arrange {

/// Which children a separator stands between: two of a row (it is upright) or two of a column.
enum SeparatorOrientation : std::int32_t {
    kSeparatorOrientation_InRow = 0,   ///< upright, between two children of a row
    kSeparatorOrientation_InColumn = 1 ///< lying, between two children of a column
};

/// What a client shows in the gap between two children of a group. The group asks for one for each
/// gap (`BuildSeparator`) and never deletes it.
class ISeparator {
public:
    /// `inRect` is the gap: as long as the group's spacing, and as high (in a row) or as wide (in a
    /// column) as the smaller one of its two neighbours.
    virtual void Place(SeparatorOrientation inOrientation, geom::RectT<float> const& inRect) = 0;

protected:
    ~ISeparator() = default;
};

} // namespace brindle::arrange
