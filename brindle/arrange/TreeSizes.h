#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/IArrangeable.h>

namespace brindle::arrange {

/// How small a tree can become, for the limits of a window. Nothing is placed.
///
///     auto const least = MinimumSize(root);             // the limits of the window
///     float const height = SizeForWidth(root, 400.0F).y; // what 400 of width need
///
/// Both measure the node if it is invalid. A leaf whose height depends on its width counts with its
/// height at the width at which it was last placed.

/// The width of the narrowest alternative of the node, and the height of the lowest one. In
/// anything narrower or lower content is cut off. Where the two are different alternatives, neither
/// fits in this size: `SizeForWidth` says how high the narrowest one is. (0, 0) without
/// alternatives.
BRN_API geom::PointT<float> MinimumSize(IArrangeable& ioTree);

/// The minimum size of the lowest alternative that is no wider than `inWidth`. If all are wider,
/// that of the narrowest one, so the `x` of the result is above `inWidth` then. (0, 0) without
/// alternatives.
BRN_API geom::PointT<float> SizeForWidth(IArrangeable& ioTree, float inWidth);

} // namespace brindle::arrange
