#pragma once

#include <brindle/arrange/LayoutForm.h>
#include <brindle/geom/Point.h>

#include <cstdint>
#include <vector>

namespace brindle::arrange::impl {

constexpr bool IsWrapping(LayoutForm inForm) noexcept {
    return inForm == LayoutForm::kRowsInColumn || inForm == LayoutForm::kColumnsInRow;
}

/// Whether the children of a line follow each other from left to right.
constexpr bool HasRows(LayoutForm inForm) noexcept {
    return inForm == LayoutForm::kRow || inForm == LayoutForm::kRowsInColumn;
}

/// A size as the lines of a form see it.
struct LineSize {
    float main = 0;  ///< along the lines
    float cross = 0; ///< across them
};

constexpr LineSize Along(LayoutForm inForm, geom::PointT<float> const& inSize) noexcept {
    return HasRows(inForm) ? LineSize{inSize.x, inSize.y} : LineSize{inSize.y, inSize.x};
}

/// What decides which layouts of a group are worth keeping. Sizes may be negative, infinite or not
/// numbers.
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
/// - Where no sum of the sizes rounds in single precision, as with whole numbers or quarters that
///   come to less than 2^24 of them, the result is just that, at a cost that grows with the lines
///   that children can form and with the sizes kept, not with the layouts that there are.
/// - Where sums round, everything is tried up to 2^18 candidates, so the result is just that, too.
///   Beyond, sizes compare as exact arithmetic gives them.
/// - Where sums may overflow, or sizes are not finite, everything is tried up to 2^10 candidates.
///   Beyond, as with more than two thousand children to wrap, the result is a few layouts of the
///   children's first alternatives, wrapped into lines of equal count.
///
/// Any thread may call; only the allocator can throw.
std::vector<FoundLayout> FindLayouts(LayoutProblem const& inProblem);

} // namespace brindle::arrange::impl
