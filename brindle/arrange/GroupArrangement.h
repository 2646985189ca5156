#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/IArrangement.h>
#include <brindle/arrange/ISeparator.h>
#include <brindle/arrange/NodePointer.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace brindle::arrange::impl {

class AbstractArrangeableGroup;

/// An alternative of a group: alternatives of its children, one behind the other along one axis.
///
/// The group's spacing, alignments and margins are asked for at every use. When the group is gone
/// the alternative still measures and arranges its children, without any of them.
class BRN_API GroupArrangement : public IArrangement {
public:
    ~GroupArrangement() override;

    bool HorizontallyExpandable() const override { return mHorizontallyExpandable; }
    bool VerticallyExpandable() const override { return mVerticallyExpandable; }
    float MinWidth() const override { return mMinWidth; }
    float MinHeight() const override { return mMinHeight; }
    float BestWidth() const override { return mBestWidth; }
    float BestHeight() const override { return mBestHeight; }
    void Prepare() override;
    bool IsOuter() const override { return mIsOuter; }

    virtual void ComputeBestWidth() = 0;
    virtual void ComputeBestHeight() = 0;

protected:
    /// What a child got of the space that was shared out last.
    struct ChildExtent {
        float width;
        float height;
        bool expandable; ///< whether it still takes part in the sharing
    };

    GroupArrangement(AbstractArrangeableGroup& inOwner,
                     std::vector<boost::intrusive_ptr<IArrangement>> const& inChildren,
                     std::vector<ISeparator*> const& inSeparators, bool inIsOuter);

    float mMinWidth = -1;
    float mMinHeight = -1;
    float mBestWidth = -1;
    float mBestHeight = -1;
    NodePointer<AbstractArrangeableGroup> mOwner;
    // None before Prepare: until then nothing is laid out.
    mutable std::vector<ChildExtent> mChildExtents;
    mutable geom::PointT<float> mUsed;
    mutable geom::PointT<float> mLastAvailable;
    std::vector<boost::intrusive_ptr<IArrangement>> mChildren;
    std::vector<ISeparator*> mSeparators;
    std::uint32_t mSeparatorBuilds; // of the owner, when it had these
    bool mIsOuter;
    bool mHorizontallyExpandable = false;
    bool mVerticallyExpandable = false;
};

/// The axis along which children follow each other.
enum class BRN_API MainAxis { kHorizontal, kVertical };

/// Lays its children out from left to right or from top to bottom. One algorithm for both: the main
/// axis is the one along which they follow each other, the cross axis is the other one.
template <MainAxis kMainAxis>
class BRN_API AxisArrangement final : public GroupArrangement {
public:
    /// An outer arrangement stands for the whole group: margins count and the group hears of its
    /// position and size. There is one separator a gap, and null where there is none.
    AxisArrangement(AbstractArrangeableGroup& inOwner,
                    std::vector<boost::intrusive_ptr<IArrangement>> const& inChildren,
                    std::vector<ISeparator*> const& inSeparators, bool inIsOuter);

    geom::PointT<float> Arrange(geom::RectT<float> const& inRect) override;
    float ExpandedWidth(float inAvailable) const override;
    float ExpandedHeight(float inAvailable) const override;
    float ClippedArea(geom::PointT<float> const& inSize) const override;
    float UnusedArea(geom::PointT<float> const& inSize) const override;
    void ComputeBestWidth() override;
    void ComputeBestHeight() override;

private:
    struct Axes;

    template <typename Axis>
    float Best() const;
    float Gaps() const;
    float MainMargins() const;
    float CrossMargins() const;
    float ExpandedMain(float inAvailable) const;
    float ExpandedCross(float inAvailable) const;
    void PlaceSeparator(std::size_t inIndex, float inEnd, float inCrossPosition, float inCross);
    void Distribute(geom::PointT<float> const& inAvailable) const;
    void DistributeAnew(geom::PointT<float> const& inAvailable) const;
    float ShareOut(float inSlack, float inExpandTotal) const;
};

extern template class AxisArrangement<MainAxis::kHorizontal>;
extern template class AxisArrangement<MainAxis::kVertical>;

using RowArrangement = AxisArrangement<MainAxis::kHorizontal>;
using ColumnArrangement = AxisArrangement<MainAxis::kVertical>;

} // namespace brindle::arrange::impl
