#pragma once

#include <brindle/arrange/DynamicGroup.h>
#include <brindle/geom/Point.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace layout_gallery {

/// What a leaf stands for in the picture.
enum class Role { kButton, kField, kLabel, kMeter, kPicture, kSpacer };

/// What a leaf asks for along one axis. One that is expandable takes what it is offered between its
/// minimum and its maximum.
struct ExtentDescription {
    float best = 0;
    std::optional<float> minimum; ///< the best size if it is not told
    bool isExpandable = false;
    float maximum = std::numeric_limits<float>::infinity();
};

struct MarginsDescription {
    float left = 0;
    float top = 0;
    float right = 0;
    float bottom = 0;
};

/// A tree told as plain data: a group if it has a kind, a leaf otherwise.
struct NodeDescription {
    std::string label;
    MarginsDescription margins;

    // a leaf's
    Role role = Role::kButton;
    ExtentDescription width;
    ExtentDescription height;

    // a group's
    std::optional<brindle::arrange::GroupArrangementType> kind;
    brindle::geom::PointT<float> spacing;
    brindle::arrange::AlignmentHorizontal horizontalAlignment =
        brindle::arrange::kAlignmentHorizontal_Left;
    brindle::arrange::AlignmentVertical verticalAlignment =
        brindle::arrange::kAlignmentVertical_Top;
    bool hasSeparators = false;
    std::vector<NodeDescription> children;
};

} // namespace layout_gallery
