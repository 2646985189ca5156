#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/AbstractArrangeableGroup.h>

#include <boost/noncopyable.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>
#include <vector>

namespace brindle::arrange {

/// The kinds of groups that a `DynamicGroup` can be; see their classes.
enum GroupArrangementType : std::int32_t {
    kGroupArrangementType_Row = 0,
    kGroupArrangementType_Column = 1,
    kGroupArrangementType_Flipping = 2,
    kGroupArrangementType_HorizontalWrapping = 3,
    kGroupArrangementType_VerticalWrapping = 4,
    kGroupArrangementType_AutoLayout = 5
};

/// A group whose kind a client changes at run time. It is no node itself: `Group` is, and all that
/// that node asks, it asks here.
class BRN_API DynamicGroup : boost::noncopyable {
public:
    /// The group starts without a parent, whatever `inParent` is, and gets one from the group that
    /// finds it as its child. A type outside the enumeration makes no group.
    explicit DynamicGroup(IArrangeable* inParent = nullptr,
                          GroupArrangementType inType = kGroupArrangementType_AutoLayout);

    virtual bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const = 0;
    virtual bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) = 0;
    virtual float HorizontalSpacing() const { return 0; }
    virtual float VerticalSpacing() const { return 0; }
    virtual AlignmentHorizontal HorizontalAlignment() const { return kAlignmentHorizontal_Left; }
    virtual AlignmentVertical VerticalAlignment() const { return kAlignmentVertical_Top; }
    virtual float LeftMargin() const { return 0; }
    virtual float RightMargin() const { return 0; }
    virtual float TopMargin() const { return 0; }
    virtual float BottomMargin() const { return 0; }
    virtual ISeparator* BuildSeparator() { return nullptr; }
    virtual void ClearSeparators() {}
    virtual void Position(geom::PointT<float> const& inPosition);
    virtual void SetDimensions(geom::PointT<float> const& inSize);
    virtual ~DynamicGroup();

    /// The node to arrange and to show to a parent group as its child; null if there is none. A
    /// change of the type ends its life and puts another one in its place.
    IArrangeable* Group() noexcept { return mGroup.get(); }
    IArrangeable const* Group() const noexcept { return mGroup.get(); }

    GroupArrangementType ArrangementType() const noexcept { return mType; }
    /// Makes the group one of another kind; nothing if it is of this kind. The group in the tree
    /// that the old one was a child of is invalidated, and so collects the new one. A type outside
    /// the enumeration leaves the group as it is.
    void SetArrangementType(GroupArrangementType inType, IArrangeable* inParent = nullptr);

    /// As the operations of the group; without one they do nothing.
    void Invalidate();
    void InvalidateAll();
    void Rearrange();
    void EnableArrangement(bool inEnabled);
    geom::PointT<float> BestSize();
    bool ArrangementEnabled() const;

private:
    void Replace(boost::shared_ptr<impl::AbstractArrangeableGroup> inGroup);

    boost::shared_ptr<impl::AbstractArrangeableGroup> mGroup;
    GroupArrangementType mType;
    // A group that was replaced by what it called itself goes when that has returned.
    std::vector<boost::shared_ptr<impl::AbstractArrangeableGroup>> mReplacedAtWork;
};

} // namespace brindle::arrange
