#pragma once

#include <brindle/geom/Point.h>

#include <cstdint>
#include <vector>

namespace brindle::arrange::impl {

/// How a group lays out its children; the last two wrap.
enum class LayoutForm : std::uint8_t { kRow, kColumn, kRowsInColumn, kColumnsInRow };

constexpr bool IsWrapping(LayoutForm inForm) noexcept {
    return inForm == LayoutForm::kRowsInColumn || inForm == LayoutForm::kColumnsInRow;
}

/// Whether the children of a line follow each other from left to right.
constexpr bool HasRows(LayoutForm inForm) noexcept {
    return inForm == LayoutForm::kRow || inForm == LayoutForm::kRowsInColumn;
}

/// What decides which layouts of a group are worth keeping. Any values, not numbers too.
struct LayoutProblem {
    /// The minimum sizes of each child's alternatives, in the order of its set.
    std::vector<std::vector<geom::PointT<float>>> children;
    geom::PointT<float> spacing;   ///< between neighbours in a row, in a column
    geom::PointT<float> margins;   ///< left and right together, top and bottom together
    std::vector<LayoutForm> forms; ///< in the order in which the group adds them to its set
};

struct FoundLayout {
    std::vector<std::uint32_t> alternatives; ///< which one of each child
    LayoutForm form{};
    std::vector<std::uint32_t> lines; ///< how many children on each line; none unless wrapping
};

/// The layouts that an `ArrangementSet` keeps when every layout of every combination of the
/// children's alternatives is added to it: by combination, the first child slowest; then by form;
/// then by rising number of lines; then by falling length of the earlier lines. In that order, too,
/// they are returned. A problem without children, or with a child without alternatives, has none.
///
/// - While sums of the sizes are exact in single precision, as those of whole numbers below 2^24,
///   these are the very layouts, at a cost that grows with what is kept and not with what there is.
/// - Where sums round, everything is tried up to 2^18 candidates, and these are the very layouts.
///   Beyond, each size is within rounding of one that trying everything keeps.
/// - Where sums may overflow, or sizes are not finite, everything is tried up to 2^12 candidates.
///   Beyond, as with thousands of children to wrap, the result is a few layouts with lines of equal
///   count, of the children's first alternatives.
///
/// Any thread may call; only the allocator can throw.
std::vector<FoundLayout> FindLayouts(LayoutProblem const& inProblem);

} // namespace brindle::arrange::impl
