#pragma once

#include "host/layout/Nodes.h"
#include "host/layout/SvgPage.h"

#include <vector>

namespace brindle::host::layout {

/// The style sheet of a page with pictures is these two, with the page's own styles between them.
extern char const* const kPageStyles;
extern char const* const kPictureStyles;

constexpr float kLabelSize = 11; ///< of the font, at the largest

/// A tree as it stands in a rectangle.
struct Picture {
    geom::RectT<float> frame;  ///< the rectangle, which begins at (0, 0)
    geom::RectT<float> bounds; ///< of the frame, and of what stands outside of it
    bool overflows = false;
    std::vector<Shape> shapes; ///< of the nodes that have a place, the root's first
    std::size_t leftOut = 0;   ///< nodes that have none: the tree is too large for the layout
};

/// Arranges the tree in a rectangle of this size, and takes its picture.
Picture TakePicture(Node& ioRoot, float inWidth, float inHeight);

/// Draws it with the frame's upper left corner at a place of the page.
void DrawPicture(SvgPage& ioPage, Picture const& inPicture, float inX, float inY);

} // namespace brindle::host::layout
