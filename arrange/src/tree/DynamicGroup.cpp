#include <brindle/arrange/DynamicGroup.h>

#include "arrange/src/tree/HostedGroup.h"
#include "arrange/src/tree/Pass.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <utility>

namespace brindle::arrange {

namespace {

using GroupPointer = boost::shared_ptr<impl::AbstractArrangeableGroup>;

template <typename Kind>
GroupPointer MakeHosted(DynamicGroup* inHost, IArrangeable* inParent) {
    return boost::make_shared<HostedGroup<Kind, DynamicGroup>>(inHost, inParent);
}

GroupPointer MakeGroup(GroupArrangementType inType, DynamicGroup* inHost, IArrangeable* inParent) {
    switch (inType) {
    case kGroupArrangementType_Row:
        return MakeHosted<Row>(inHost, inParent);
    case kGroupArrangementType_Column:
        return MakeHosted<Column>(inHost, inParent);
    case kGroupArrangementType_Flipping:
        return MakeHosted<Flipping>(inHost, inParent);
    case kGroupArrangementType_HorizontalWrapping:
        return MakeHosted<HorizontalWrapping>(inHost, inParent);
    case kGroupArrangementType_VerticalWrapping:
        return MakeHosted<VerticalWrapping>(inHost, inParent);
    case kGroupArrangementType_AutoLayout:
        return MakeHosted<AutoLayout>(inHost, inParent);
    }
    return nullptr;
}

} // namespace

DynamicGroup::DynamicGroup(IArrangeable* inParent, GroupArrangementType inType) : mType(inType) {
    SetArrangementType(inType, inParent);
}

DynamicGroup::~DynamicGroup() = default;

void DynamicGroup::Position(geom::PointT<float> const&) {}

void DynamicGroup::SetDimensions(geom::PointT<float> const&) {}

void DynamicGroup::SetArrangementType(GroupArrangementType inType, IArrangeable* inParent) {
    bool const isOtherType = inType != mType;
    impl::NodePointer<IArrangeable> holder;
    if (isOtherType || mGroup == nullptr) {
        IArrangeable* const parent = mGroup != nullptr ? mGroup->Parent() : nullptr;
        if (GroupPointer group = MakeGroup(inType, this, inParent != nullptr ? inParent : parent)) {
            holder = impl::NodePointer<IArrangeable>(parent);
            Replace(std::move(group));
        }
    }
    mType = inType;
    if (isOtherType && mGroup != nullptr) {
        mGroup->Invalidate();
    }
    // Its alternatives still refer to the group that was replaced.
    if (IArrangeable* const node = holder.Get()) {
        node->Invalidate();
    }
}

void DynamicGroup::Replace(GroupPointer inGroup) {
    // The engine may still be using the old group, which must no longer ask its host anything.
    if (mGroup != nullptr && impl::Pass::Keep(mGroup)) {
        mGroup->Retire();
    }
    mGroup = std::move(inGroup);
}

void DynamicGroup::Invalidate() {
    if (mGroup != nullptr) {
        mGroup->Invalidate();
    }
}

void DynamicGroup::MarkInvalid() noexcept {
    if (mGroup != nullptr) {
        mGroup->MarkInvalid();
    }
}

void DynamicGroup::InvalidateAll() {
    if (mGroup != nullptr) {
        mGroup->InvalidateAll();
    }
}

void DynamicGroup::Rearrange() {
    if (mGroup != nullptr) {
        mGroup->Rearrange();
    }
}

void DynamicGroup::EnableArrangement(bool inEnabled) {
    if (mGroup != nullptr) {
        mGroup->EnableArrangement(inEnabled);
    }
}

geom::PointT<float> DynamicGroup::BestSize() {
    return mGroup != nullptr ? mGroup->BestSize() : geom::PointT<float>{};
}

bool DynamicGroup::ArrangementEnabled() const {
    return mGroup != nullptr && mGroup->ArrangementEnabled();
}

} // namespace brindle::arrange
