#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/FunctionLeaf.h>
#include <brindle/arrange/Margins.h>
#include <brindle/geom/Point.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace brindle::proplist {

class PropList;

} // namespace brindle::proplist

namespace brindle::filesupport {

class File;

} // namespace brindle::filesupport

namespace brindle::arrange {

/// The upper bound of every size, margin and spacing of a description, which keeps all sums finite.
constexpr float kLargestSize = 1e9F;

/// The layout leaves out nodes on deeper levels, so a description has no more of them.
constexpr std::size_t kMostLevels = 2000;

/// What a leaf stands for.
enum class LeafRole : std::uint8_t {
    kButton,  ///< "button"
    kField,   ///< "field"
    kLabel,   ///< "label"
    kMeter,   ///< "meter"
    kPicture, ///< "picture"
    kSpacer   ///< "spacer": nothing to see, only space
};

/// The names of the roles, in the order of the enumeration.
constexpr std::array<char const*, 6> kLeafRoleNames{"button", "field",   "label",
                                                    "meter",  "picture", "spacer"};

/// A tree as plain data. A node is a group if it has a kind, and a leaf otherwise. Texts are UTF-8.
struct LayoutDescription {
    std::uint32_t key = 0; ///< among its siblings, which are in ascending order of their keys
    std::string name;      ///< by which a program finds the node: different for each, or empty
    std::string label;     ///< the text to show, for a person
    Margins margins;       ///< around a leaf; the inset of a group

    // of a leaf
    LeafRole role = LeafRole::kButton; ///< what kind of widget it stands for
    LeafSizes sizes;                   ///< what it asks for

    // of a group
    std::optional<GroupArrangementType> kind; ///< which group it is; a leaf has none
    geom::PointT<float> spacing;              ///< between neighbours, and between lines
    /// Of children narrower than their space.
    AlignmentHorizontal horizontalAlignment = kAlignmentHorizontal_Left;
    /// Of children lower than their space.
    AlignmentVertical verticalAlignment = kAlignmentVertical_Top;
    bool hasSeparators = false;              ///< whether something is drawn in the gaps
    std::vector<LayoutDescription> children; ///< in the order in which they are placed
};

/// A property list does not describe a tree, or a tree has no node of a name. Of a list `what()` is
/// the path of the wrong key and what was expected there, in English:
/// "children/2/width/best: a number is expected, not a text".
class BRN_API layout_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads a tree from a property list; docs/layout describes its form. Throws `layout_error` for the
/// first key that is unknown, missing or of the wrong type or value, NaN included, for a name that
/// two nodes have, and for more than `kMostLevels` levels.
BRN_API LayoutDescription ReadLayoutDescription(proplist::PropList const& inList);

/// The same from a file, for which the program need not have installed an XML parser. Also throws
/// `layout_error`, with the path, if the file cannot be read or is no property list.
BRN_API LayoutDescription LoadLayoutDescription(filesupport::File const& inFile);

} // namespace brindle::arrange
