#pragma once

#include "host/layout/Nodes.h"

#include <functional>
#include <string>
#include <vector>

namespace layout_gallery {

/// One rectangle that a tree is arranged in.
struct Viewpoint {
    float width;
    float height;
    std::string note = {}; ///< stands below the size
    /// Done to the root before it is arranged.
    std::function<void(brindle::host::layout::GroupNode&)> change = {};
};

/// A tree, and the rectangles that show what it does.
struct Exhibit {
    std::string name; ///< without blanks, to link to
    std::string title;
    std::string caption;
    std::vector<Viewpoint> viewpoints;
    bool showsWidths = false; ///< each leaf shows its width instead of its label
    bool isWide = false;      ///< takes a line of the page by itself
    brindle::host::layout::NodeDescription tree = {}; ///< a group
};

/// The exhibits with the trees that stand in the directory, each in a file of its exhibit's name
/// with the extension ".xml". Throws `std::runtime_error` for a file that is no tree.
std::vector<Exhibit> Exhibits(std::string const& inDirectory);

} // namespace layout_gallery
