#include <brindle/arrange/GroupArrangement.h>

#include <brindle/arrange/AbstractArrangeableGroup.h>

#include <algorithm>

namespace brindle::arrange::impl {

GroupArrangement::GroupArrangement(
    AbstractArrangeableGroup& inOwner,
    std::vector<boost::intrusive_ptr<IArrangement>> const& inChildren,
    std::vector<ISeparator*> const& inSeparators, bool inIsOuter)
    : mOwner(&inOwner), mChildren(inChildren), mSeparators(inSeparators),
      mSeparatorBuilds(inOwner.SeparatorBuilds()), mIsOuter(inIsOuter) {
    for (auto const& child : mChildren) {
        mDepth = std::max(mDepth, child->Depth() + 1);
        mCount += child->Count();
    }
}

GroupArrangement::~GroupArrangement() = default;

void GroupArrangement::Prepare() {
    if (!mChildExtents.empty()) {
        return;
    }
    for (auto const& child : mChildren) {
        child->Prepare();
    }
    mChildExtents.assign(mChildren.size(), ChildExtent{0, 0, false});
    ComputeBestWidth();
    ComputeBestHeight();
    for (auto const& child : mChildren) {
        mHorizontallyExpandable = mHorizontallyExpandable || child->HorizontallyExpandable();
        mVerticallyExpandable = mVerticallyExpandable || child->VerticallyExpandable();
    }
}

} // namespace brindle::arrange::impl
