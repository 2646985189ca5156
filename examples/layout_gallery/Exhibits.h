#pragma once

#include <brindle/arrange/LayoutDescription.h>

#include <functional>
#include <string>
#include <vector>

namespace layout_gallery {

/// One rectangle that a tree is arranged in.
struct Viewpoint {
    float width;
    float height;
    std::string note = {}; ///< printed below the size
    /// Applied to the tree before it is arranged; may be empty.
    std::function<void(brindle::arrange::LayoutDescription&)> change = {};
};

/// A tree, and the rectangles that show what it does.
struct Exhibit {
    std::string name; ///< without blanks: links and the file of the tree use it
    std::string title;
    std::string caption;
    std::vector<Viewpoint> viewpoints;
    bool showsWidths = false; ///< each leaf shows its width instead of its label
    bool isWide = false;      ///< has a line of the page to itself
    brindle::arrange::LayoutDescription tree = {}; ///< a group
};

/// The exhibits, with their trees read from the directory: each from the file that is named for the
/// exhibit, with the extension ".xml". Throws `std::runtime_error` for a file that holds no tree.
std::vector<Exhibit> Exhibits(std::string const& inDirectory);

} // namespace layout_gallery
