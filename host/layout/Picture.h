#pragma once

#include "host/layout/PicturedTree.h"
#include "host/layout/SvgPage.h"

#include <vector>

namespace brindle::host::layout {

/// The style sheet of a page with pictures is `kPageStyles`, the page's own styles, and then
/// `kPictureStyles`.
extern char const* const kPageStyles;
extern char const* const kPictureStyles;

constexpr float kLabelSize = 11; ///< the largest font size of a label

/// A tree arranged in a rectangle.
struct Picture {
    geom::RectT<float> frame;  ///< the rectangle, which begins at (0, 0)
    geom::RectT<float> bounds; ///< of the frame and everything that overflows it
    bool overflows = false;
    std::vector<Shape>
        shapes; ///< of the nodes that have a place, from back to front; the root's comes first
    std::size_t leftOut =
        0; ///< how many nodes have no place, because the tree is too large for the layout
};

/// Arranges the tree in a rectangle of this size.
Picture TakePicture(PicturedTree& ioTree, float inWidth, float inHeight);

/// Draws the picture with the upper left corner of its frame at a point of the page.
void DrawPicture(SvgPage& ioPage, Picture const& inPicture, float inX, float inY);

} // namespace brindle::host::layout
