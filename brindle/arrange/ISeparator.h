#pragma once

#include <brindle/geom/Rect.h>

#include <cstdint>

namespace brindle::arrange {

/// Which children a separator stands between: two of a row (it is upright) or two of a column.
enum SeparatorOrientation : std::int32_t {
    kSeparatorOrientation_InRow = 0,
    kSeparatorOrientation_InColumn = 1
};

/// What a client shows in the gap between two children of a group. A group asks for one a gap
/// (`BuildSeparator`) and never deletes it.
class ISeparator {
public:
    /// The gap is `inRect`: as long as the group's spacing, as thick as the lower (in a row) or the
    /// narrower (in a column) of the two neighbours.
    virtual void Place(SeparatorOrientation inOrientation, geom::RectT<float> const& inRect) = 0;

protected:
    ~ISeparator() = default;
};

} // namespace brindle::arrange
