#pragma once

#include "Nodes.h"

#include <functional>
#include <string>
#include <vector>

namespace layout_gallery {

/// One rectangle that a tree is arranged in.
struct View {
    float width;
    float height;
    std::string note = {};                       ///< stands below the size
    std::function<void(GroupNode&)> change = {}; ///< done to the root before it is arranged
};

/// A tree, and the rectangles that show what it does.
struct Exhibit {
    std::string name; ///< without blanks, to link to
    std::string title;
    std::string caption;
    NodeDescription tree; ///< a group
    std::vector<View> views;
    bool showsWidths = false; ///< each leaf shows its width instead of its label
    bool isWide = false;      ///< takes a line of the page by itself
};

std::vector<Exhibit> Exhibits();

} // namespace layout_gallery
