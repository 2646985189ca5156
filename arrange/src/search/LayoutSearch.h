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

/// Everything that decides which layouts of a group are worth keeping. Sizes may be negative,
/// infinite or NaN.
struct LayoutProblem {
    /// The minimum sizes of each child's alternatives, in the order of its set.
    std::vector<std::vector<geom::PointT<float>>> children;
    geom::PointT<float> spacing;   ///< between neighbours in a row, in a column
    geom::PointT<float> margins;   ///< left and right together, top and bottom together
    std::vector<LayoutForm> forms; ///< in the order in which the group adds them to its set
};

struct FoundLayout {
    std::vector<std::uint32_t> alternatives; ///< the index of each child's alternative
    LayoutForm form{};
    std::vector<std::uint32_t> lines; ///< how many children on each line; empty unless wrapping
};

/// What a search found.
struct FoundLayouts {
    std::vector<FoundLayout> layouts;
    bool areComplete = true; ///< whether all layouts were compared
};

/// The layouts that an `ArrangementSet` would keep if every layout of every combination of the
/// children's alternatives were added to it, ordered by combination, the first child varying
/// slowest, then by form, then by rising number of lines, then by falling length of the earlier
/// lines. They are returned in the same order. A problem without children, or with a child without
/// alternatives, has no layouts.
///
/// - Where no sum of the sizes is rounded in single precision, as with whole numbers or quarters
///   whose sum is below 2^24 of them, this holds for any number of layouts. The cost grows with the
///   number of runs of children and of sizes kept, not with the number of layouts.
/// - Where sums are rounded, up to 2^18 candidates are all tried, so the same holds. Beyond that
///   number, sizes are compared in exact arithmetic.
/// - Where sums may overflow, or sizes are not finite, up to 2^10 candidates are all tried. Beyond
///   that number, and with more than two thousand children to wrap, the result is not complete: a
///   few layouts of the children's first alternatives, wrapped into lines of equal count.
///
/// Any thread may call. Throws nothing but `std::bad_alloc`.
FoundLayouts FindLayouts(LayoutProblem const& inProblem);

} // namespace brindle::arrange::impl
