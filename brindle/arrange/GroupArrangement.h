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

/// An alternative of a group: one alternative of each child, placed one after the other along one
/// axis.
///
/// The group's spacing, alignments and margins are asked for at every use and never cached. After
/// the group has been destroyed the alternative still measures and arranges its children, with no
/// spacing, alignment or margins.
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

    std::vector<boost::intrusive_ptr<IArrangement>> const& Children() const noexcept {
        return mChildren;
    }
    /// Null once the group has been destroyed.
    AbstractArrangeableGroup const* Owner() const noexcept { return mOwner.Get(); }

    virtual void ComputeBestWidth() = 0;
    virtual void ComputeBestHeight() = 0;

protected:
    /// The size that a child got when space was last distributed.
    struct ChildExtent {
        float width;
        float height;
        bool expandable; ///< whether it still takes part in the distribution
    };

    GroupArrangement(AbstractArrangeableGroup& inOwner,
                     std::vector<boost::intrusive_ptr<IArrangement>> const& inChildren,
                     std::vector<ISeparator*> const& inSeparators, bool inIsOuter);

    float mMinWidth = -1;
    float mMinHeight = -1;
    float mBestWidth = -1;
    float mBestHeight = -1;
    NodePointer<AbstractArrangeableGroup> mOwner;
    // Empty until Prepare; until then nothing can be laid out.
    mutable std::vector<ChildExtent> mChildExtents;
    mutable geom::PointT<float> mUsed;
    mutable geom::PointT<float> mLastAvailable;
    std::vector<boost::intrusive_ptr<IArrangement>> mChildren;
    std::vector<ISeparator*> mSeparators;
    std::uint32_t mSeparatorBuilds; // of the owner, when it supplied these
    bool mIsOuter;
    bool mHorizontallyExpandable = false;
    bool mVerticallyExpandable = false;
};

} // namespace brindle::arrange::impl
