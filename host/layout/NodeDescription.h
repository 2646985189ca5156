#pragma once

#include <brindle/arrange/DynamicGroup.h>
#include <brindle/geom/Point.h>

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace brindle::host::layout {

/// The upper bound of every size, margin and spacing, which keeps all sums finite.
constexpr float kLargestSize = 1e9F;

/// What a leaf is drawn as in a picture.
enum class Role { kButton, kField, kLabel, kMeter, kPicture, kSpacer };

/// The names of the roles, in the order of the enumeration.
constexpr std::array<char const*, 6> kRoleNames{"button", "field",   "label",
                                                "meter",  "picture", "spacer"};

/// What a leaf asks for along one axis. If it is expandable, it takes what it is offered, within
/// its minimum and maximum.
struct ExtentDescription {
    float best = 0;
    std::optional<float> minimum; ///< the best size if it is empty
    bool isExpandable = false;
    float maximum = kLargestSize;
};

struct MarginsDescription {
    float left = 0;
    float top = 0;
    float right = 0;
    float bottom = 0;
};

/// A tree as plain data. A node is a group if it has a kind, and a leaf otherwise.
struct NodeDescription {
    std::uint32_t key = 0; ///< among its siblings, which are in ascending order of their keys
    std::string label;
    MarginsDescription margins;

    // of a leaf
    Role role = Role::kButton;
    ExtentDescription width;
    ExtentDescription height;

    // of a group
    std::optional<arrange::GroupArrangementType> kind;
    geom::PointT<float> spacing;
    arrange::AlignmentHorizontal horizontalAlignment = arrange::kAlignmentHorizontal_Left;
    arrange::AlignmentVertical verticalAlignment = arrange::kAlignmentVertical_Top;
    bool hasSeparators = false;
    std::vector<NodeDescription> children;
};

/// A property list does not describe a tree. `what()` is the path of the wrong key and what was
/// expected there: "children/2/width/best: a number is expected, not a text".
class description_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace brindle::host::layout
