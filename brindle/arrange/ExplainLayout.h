#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/IArrangeable.h>

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::arrange {

/// The rule that decided between an alternative and the one that was chosen. The rules are applied
/// in this order, and the first one in which the two differ decides.
enum class LayoutReason : std::uint8_t {
    kOnlyOne,     ///< there is no other alternative
    kFits,        ///< only one of the two fits at its minimum size
    kClippedArea, ///< neither fits, and less of one is cut off
    kUnusedArea,  ///< both fit, and one leaves less of the rectangle unused
    kMinimumArea, ///< the minimum area of one is smaller
    kGoldenRatio, ///< the shape of one is nearer the golden ratio
    kOrder        ///< nothing else: the earlier one is chosen
};

/// An alternative of a tree, and how it fares in a rectangle.
struct ExplainedAlternative {
    /// Such as "row of 3", "rows 3+2" or, with the groups inside, "column of 2 [row of 4, .]". A
    /// dot stands for a child that is a leaf. A long form ends in "...".
    std::string form;
    geom::PointT<float> minimum; ///< below it the alternative does not fit
    geom::PointT<float> best;    ///< what it takes if there is room
    bool fits = false;     ///< true if the rectangle is at least the minimum in both directions
    bool isChosen = false; ///< true of at most one
    float clippedArea = 0; ///< of one that does not fit: how much is cut off
    float unusedArea = 0;  ///< of one that fits: how much of the rectangle stays empty
    /// Why it was not chosen. Of the chosen one: the latest rule that any other one lost by.
    LayoutReason reason = LayoutReason::kOnlyOne;
};

/// The alternatives of the tree, in the order in which the engine compares them, for a rectangle of
/// this size. Nothing is placed; the functions and operations that say how a leaf expands are
/// called.
BRN_API std::vector<ExplainedAlternative> ExplainedAlternatives(IArrangeable& ioTree,
                                                                geom::PointT<float> const& inSize);

/// The same as text, a line for each alternative, with an asterisk in front of the chosen one.
///
///     std::cerr << ExplainLayout(root, {160, 90});
///
///       row of 3: minimum 162x20, best 162x20, does not fit: the chosen one fits
///       rows 1+2: minimum 108x40, best 108x40, fits: its minimum area is larger (4320)
///     * column of 3: minimum 54x60, best 54x60, fits: chosen, its minimum area is the
///       smallest (3240)
BRN_API std::string ExplainLayout(IArrangeable& ioTree, geom::PointT<float> const& inSize);

} // namespace brindle::arrange
