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

/// No size, margin or spacing is to be larger: then all sums are finite.
constexpr float kLargestSize = 1e9F;

/// What a leaf stands for in the picture.
enum class Role { kButton, kField, kLabel, kMeter, kPicture, kSpacer };

/// The names of the roles, in their order.
constexpr std::array<char const*, 6> kRoleNames{"button", "field",   "label",
                                                "meter",  "picture", "spacer"};

/// What a leaf asks for along one axis. One that is expandable takes what it is offered between its
/// minimum and its maximum.
struct ExtentDescription {
    float best = 0;
    std::optional<float> minimum; ///< the best size if it is not told
    bool isExpandable = false;
    float maximum = kLargestSize;
};

struct MarginsDescription {
    float left = 0;
    float top = 0;
    float right = 0;
    float bottom = 0;
};

/// A tree told as plain data: a group if it has a kind, a leaf otherwise.
struct NodeDescription {
    std::uint32_t key = 0; ///< among its siblings, which stand in the order of their keys
    std::string label;
    MarginsDescription margins;

    // a leaf's
    Role role = Role::kButton;
    ExtentDescription width;
    ExtentDescription height;

    // a group's
    std::optional<arrange::GroupArrangementType> kind;
    geom::PointT<float> spacing;
    arrange::AlignmentHorizontal horizontalAlignment = arrange::kAlignmentHorizontal_Left;
    arrange::AlignmentVertical verticalAlignment = arrange::kAlignmentVertical_Top;
    bool hasSeparators = false;
    std::vector<NodeDescription> children;
};

/// A property list describes no tree. `what()` is the path of the key that is wrong, with what was
/// expected there: "children/2/width/best: a number is expected, not a text".
class description_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace brindle::host::layout
