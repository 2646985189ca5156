#include <brindle/arrange/AxisArrangement.h>

#include "arrange/src/tree/Axis.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace brindle::arrange::impl {

namespace {

// Sizes that differ by less are the same, and less space than this is not distributed.
constexpr float kTolerance = 0.0001F;
constexpr std::size_t kMostRoundingSweeps = 16;
constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();
// Equal to no size, not even to itself.
constexpr geom::PointT<float> kNoSize{kNotANumber, kNotANumber};

bool IsSame(geom::PointT<float> const& inLHS, geom::PointT<float> const& inRHS) {
    return std::fabs(inLHS.x - inRHS.x) < kTolerance && std::fabs(inLHS.y - inRHS.y) < kTolerance;
}

} // namespace

template <MainAxis kMainAxis>
struct AxisArrangement<kMainAxis>::Axes {
    static constexpr bool kIsRow = kMainAxis == MainAxis::kHorizontal;
    using Main = Axis<kMainAxis>;
    using Cross = Axis<kIsRow ? MainAxis::kVertical : MainAxis::kHorizontal>;

    static geom::PointT<float> Point(float inMain, float inCross) {
        return kIsRow ? geom::PointT<float>{inMain, inCross} : geom::PointT<float>{inCross, inMain};
    }
    static geom::RectT<float> Rect(geom::PointT<float> inOrigin, geom::PointT<float> inExtent) {
        return {inOrigin.x, inOrigin.y, inExtent.x, inExtent.y};
    }
};

template <MainAxis kMainAxis>
AxisArrangement<kMainAxis>::AxisArrangement(
    AbstractArrangeableGroup& inOwner,
    std::vector<boost::intrusive_ptr<IArrangement>> const& inChildren,
    std::vector<ISeparator*> const& inSeparators, bool inIsOuter)
    : GroupArrangement(inOwner, inChildren, inSeparators, inIsOuter) {
    float main = 0;
    float cross = 0;
    for (auto const& child : mChildren) {
        main += Axes::Main::Min(*child);
        cross = std::max(cross, Axes::Cross::Min(*child));
    }
    main = main + Gaps() + MainMargins();
    cross += CrossMargins();
    geom::PointT<float> const minimum = Axes::Point(main, cross);
    mMinWidth = minimum.x;
    mMinHeight = minimum.y;
}

template <MainAxis kMainAxis>
void AxisArrangement<kMainAxis>::ComputeBestWidth() {
    mBestWidth = Best<Axis<MainAxis::kHorizontal>>();
}

template <MainAxis kMainAxis>
void AxisArrangement<kMainAxis>::ComputeBestHeight() {
    mBestHeight = Best<Axis<MainAxis::kVertical>>();
}

/// On the main axis the children add up; on the cross axis the largest one counts.
template <MainAxis kMainAxis>
template <typename Measured>
float AxisArrangement<kMainAxis>::Best() const {
    float best = 0;
    if constexpr (std::is_same_v<Measured, typename Axes::Main>) {
        for (auto const& child : mChildren) {
            best += Measured::Best(*child);
        }
        return best + Gaps() + MainMargins();
    } else {
        for (auto const& child : mChildren) {
            best = std::max(best, Measured::Best(*child));
        }
        return best + CrossMargins();
    }
}

template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::ExpandedWidth(float inAvailable) const {
    return Axes::kIsRow ? ExpandedMain(inAvailable) : ExpandedCross(inAvailable);
}

template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::ExpandedHeight(float inAvailable) const {
    return Axes::kIsRow ? ExpandedCross(inAvailable) : ExpandedMain(inAvailable);
}

template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::ExpandedMain(float inAvailable) const {
    float const margins = MainMargins();
    float const available = inAvailable - margins;
    float taken = 0;
    for (auto const& child : mChildren) {
        if (!(taken < available)) {
            break;
        }
        taken += Axes::Main::Expanded(*child, available - taken);
    }
    taken += Gaps();
    return std::min(taken, available) + margins;
}

template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::ExpandedCross(float inAvailable) const {
    float const margins = CrossMargins();
    float const available = inAvailable - margins;
    float taken = 0;
    for (auto const& child : mChildren) {
        if (!(taken < available)) {
            break;
        }
        taken = std::max(taken, Axes::Cross::Expanded(*child, available));
    }
    return taken + margins;
}

template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::ClippedArea(geom::PointT<float> const& inSize) const {
    float const availableMain = Axes::Main::Coordinate(inSize) - MainMargins();
    float const availableCross = Axes::Cross::Coordinate(inSize) - CrossMargins();
    float const spacing = Axes::Main::Spacing(mOwner.Get());
    float clipped = 0;
    float position = 0;
    bool isFirst = true;
    for (auto const& child : mChildren) {
        float const main = Axes::Main::Min(*child);
        float const cross = Axes::Cross::Min(*child);
        if (availableMain < position + main) {
            clipped += cross * (main - std::max(availableMain - position, 0.0F));
        }
        clipped += main * std::max(cross - availableCross, 0.0F);
        position += main;
        // A child's position leaves out the gap right in front of it.
        if (!isFirst) {
            position += spacing;
        }
        isFirst = false;
    }
    return clipped;
}

template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::UnusedArea(geom::PointT<float> const& inSize) const {
    float const availableMain = Axes::Main::Coordinate(inSize) - MainMargins();
    float const availableCross = Axes::Cross::Coordinate(inSize) - CrossMargins();
    Distribute(Axes::Point(availableMain, availableCross));
    float const spacing = Axes::Main::Spacing(mOwner.Get());
    float used = 0;
    float inner = 0;
    for (std::size_t index = 0; index < mChildExtents.size(); ++index) {
        float const gap = index > 0 ? spacing : 0;
        float const extent = Axes::Main::Extent(mChildExtents[index]);
        inner += mChildren[index]->UnusedArea(Axes::Point(extent, availableCross)) +
                 gap * availableCross;
        used += gap + extent;
    }
    AbstractArrangeableGroup const* const owner = mIsOuter ? mOwner.Get() : nullptr;
    float const horizontalMargins = Axis<MainAxis::kHorizontal>::Margins(owner);
    float const verticalMargins = Axis<MainAxis::kVertical>::Margins(owner);
    return (availableMain - used) * availableCross + inner + horizontalMargins * inSize.y +
           verticalMargins * inSize.x;
}

template <MainAxis kMainAxis>
geom::PointT<float> AxisArrangement<kMainAxis>::Arrange(geom::RectT<float> const& inRect) {
    using Main = typename Axes::Main;
    using Cross = typename Axes::Cross;
    float const availableMain = Main::Extent(inRect) - MainMargins();
    float const availableCross = Cross::Extent(inRect) - CrossMargins();
    Distribute(Axes::Point(availableMain, availableCross));

    AbstractArrangeableGroup* const outerOwner = mIsOuter ? mOwner.Get() : nullptr;
    float const originMain = Main::Coordinate(inRect) + Main::LeadMargin(outerOwner);
    float const originCross = Cross::Coordinate(inRect) + Cross::LeadMargin(outerOwner);
    float cursor = originMain + Main::Shift(mOwner.Get(), availableMain - Main::Coordinate(mUsed));
    if (outerOwner != nullptr) {
        float const groupCross =
            originCross + Cross::Shift(outerOwner, availableCross - Cross::Coordinate(mUsed));
        outerOwner->Position(Axes::Point(cursor, groupCross));
    }

    float previousCross = 0;
    float previousCrossPosition = 0;
    float largestCross = 0;
    for (std::size_t index = 0; index < mChildExtents.size(); ++index) {
        if (index > 0) {
            cursor += Main::Spacing(mOwner.Get());
        }
        ChildExtent const extent = mChildExtents[index];
        float const crossPosition =
            originCross + Cross::Shift(mOwner.Get(), availableCross - Cross::Extent(extent));
        geom::PointT<float> const taken = mChildren[index]->Arrange(
            Axes::Rect(Axes::Point(cursor, crossPosition), {extent.width, extent.height}));
        float const takenCross = Cross::Coordinate(taken);
        if (index > 0) {
            // The gap in front of this child has the cross extent of the smaller neighbour.
            bool const isPreviousThinner = takenCross > previousCross;
            PlaceSeparator(index - 1, cursor,
                           isPreviousThinner ? previousCrossPosition : crossPosition,
                           isPreviousThinner ? previousCross : takenCross);
        }
        // What follows is placed by the size that the child reports, not by the one it was given.
        cursor += Main::Coordinate(taken);
        previousCross = takenCross;
        previousCrossPosition = crossPosition;
        largestCross = std::max(largestCross, takenCross);
    }

    geom::PointT<float> const size = Axes::Point(std::max(availableMain, cursor - originMain),
                                                 std::max(availableCross, largestCross));
    if (AbstractArrangeableGroup* const owner = mIsOuter ? mOwner.Get() : nullptr) {
        owner->SetDimensions(size);
    }
    return size;
}

/// `inEnd` is the position on the main axis at which the gap ends.
template <MainAxis kMainAxis>
void AxisArrangement<kMainAxis>::PlaceSeparator(std::size_t inIndex, float inEnd,
                                                float inCrossPosition, float inCross) {
    if (inIndex >= mSeparators.size() || mSeparators[inIndex] == nullptr) {
        return;
    }
    float const position = inEnd - Axes::Main::Spacing(mOwner.Get());
    float const extent = Axes::Main::Spacing(mOwner.Get());
    // The separators may have been freed with their group, or when it rebuilt them from within.
    AbstractArrangeableGroup const* const owner = mOwner.Get();
    if (owner == nullptr || owner->SeparatorBuilds() != mSeparatorBuilds) {
        return;
    }
    mSeparators[inIndex]->Place(
        Axes::kIsRow ? kSeparatorOrientation_InRow : kSeparatorOrientation_InColumn,
        Axes::Rect(Axes::Point(position, inCrossPosition), Axes::Point(extent, inCross)));
}

/// The sum of the gaps between the children; 0 without children.
template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::Gaps() const {
    return mChildren.empty()
               ? 0
               : static_cast<float>(mChildren.size() - 1) * Axes::Main::Spacing(mOwner.Get());
}

template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::MainMargins() const {
    return mIsOuter ? Axes::Main::Margins(mOwner.Get()) : 0;
}

template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::CrossMargins() const {
    return mIsOuter ? Axes::Cross::Margins(mOwner.Get()) : 0;
}

/// Distributes space, from which margins have been taken off, to the children.
template <MainAxis kMainAxis>
void AxisArrangement<kMainAxis>::Distribute(geom::PointT<float> const& inAvailable) const {
    if (IsSame(mLastAvailable, inAvailable)) {
        return;
    }
    mLastAvailable = inAvailable;
    try {
        DistributeAnew(inAvailable);
    } catch (...) {
        mLastAvailable = kNoSize;
        throw;
    }
    // If the client had another size distributed from within, the extents belong to neither.
    if (!IsSame(mLastAvailable, inAvailable)) {
        mLastAvailable = kNoSize;
    }
}

template <MainAxis kMainAxis>
void AxisArrangement<kMainAxis>::DistributeAnew(geom::PointT<float> const& inAvailable) const {
    float const availableMain = Axes::Main::Coordinate(inAvailable);
    float const availableCross = Axes::Cross::Coordinate(inAvailable);
    float const slack = availableMain - Axes::Main::Min(*this) + MainMargins();
    float expandTotal = 0;
    float usedCross = 0;
    for (std::size_t index = 0; index < mChildExtents.size(); ++index) {
        IArrangement const& child = *mChildren[index];
        ChildExtent& extent = mChildExtents[index];
        float const main = Axes::Main::Best(child);
        float const cross = Axes::Cross::Expanded(child, availableCross);
        Axes::Main::Extent(extent) = main;
        Axes::Cross::Extent(extent) = cross;
        usedCross = std::max(usedCross, cross);
        extent.expandable = Axes::Main::IsExpandable(child);
        if (extent.expandable) {
            expandTotal += main;
        }
    }
    mUsed = Axes::Point(availableMain - ShareOut(slack, expandTotal), usedCross);
}

/// Adds the slack to the expandable children, or takes it off them, in proportion to their extents,
/// whose sum is `inExpandTotal`. Returns the slack that is left.
template <MainAxis kMainAxis>
float AxisArrangement<kMainAxis>::ShareOut(float inSlack, float inExpandTotal) const {
    float slack = inSlack;
    float expandTotal = inExpandTotal;
    // Each sweep either takes a child out of the distribution or leaves a rest that is due to
    // rounding, which may never vanish.
    std::size_t sweepsLeft = mChildren.size() + kMostRoundingSweeps;
    while (std::fabs(slack) >= kTolerance && expandTotal > 0 && sweepsLeft-- > 0) {
        float total = expandTotal;
        for (std::size_t index = 0; index < mChildExtents.size(); ++index) {
            ChildExtent& extent = mChildExtents[index];
            if (!extent.expandable) {
                continue;
            }
            IArrangement const& child = *mChildren[index];
            float const factor = (total + slack) / total;
            float const old = Axes::Main::Extent(extent);
            float const target = old * factor;
            float const given =
                std::max(Axes::Main::Min(child), Axes::Main::Expanded(child, target));
            if (given == target) {
                expandTotal += given - old;
            } else {
                extent.expandable = false;
                expandTotal -= old;
            }
            slack -= given - old;
            Axes::Main::Extent(extent) = given;
            total -= old;
        }
    }
    return slack;
}

template class AxisArrangement<MainAxis::kHorizontal>;
template class AxisArrangement<MainAxis::kVertical>;

} // namespace brindle::arrange::impl
