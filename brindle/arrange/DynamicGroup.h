#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/AbstractArrangeableGroup.h>

#include <boost/core/noncopyable.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>

namespace brindle::arrange {

/// The kinds of groups that a `DynamicGroup` can be; see their classes.
enum GroupArrangementType : std::int32_t {
    kGroupArrangementType_Row = 0,                ///< `Row`
    kGroupArrangementType_Column = 1,             ///< `Column`
    kGroupArrangementType_Flipping = 2,           ///< `Flipping`
    kGroupArrangementType_HorizontalWrapping = 3, ///< `HorizontalWrapping`
    kGroupArrangementType_VerticalWrapping = 4,   ///< `VerticalWrapping`
    kGroupArrangementType_AutoLayout = 5          ///< `AutoLayout`
};

/// A group whose kind can change at run time. It is not a node itself: `Group` returns the node,
/// which forwards everything that a group is asked for to the operations here.
///
///     toolbar.SetArrangementType(kGroupArrangementType_Column);
///     toolbar.Group()->Arrange({0, 0, 60, 400});
class BRN_API DynamicGroup : boost::noncopyable {
public:
    /// The node starts without a parent, whatever `inParent` is; a group that shows it as a child
    /// becomes its parent when that group is measured. A type outside the enumeration makes no
    /// node.
    explicit DynamicGroup(IArrangeable* inParent = nullptr,
                          GroupArrangementType inType = kGroupArrangementType_AutoLayout);

    /// Calls the function for each child in order until it returns false, and returns whether it
    /// returned true for all of them. Both forms show the same children.
    virtual bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const = 0;
    virtual bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) = 0;
    ///@{
    /// The space between neighbours: from left to right, and from top to bottom.
    virtual float HorizontalSpacing() const { return 0; }
    virtual float VerticalSpacing() const { return 0; }
    ///@}
    ///@{
    /// Where a child stands that is smaller than the space it got.
    virtual AlignmentHorizontal HorizontalAlignment() const { return kAlignmentHorizontal_Left; }
    virtual AlignmentVertical VerticalAlignment() const { return kAlignmentVertical_Top; }
    ///@}
    ///@{
    /// Space that is kept free around the group, for the outermost group of a tree.
    virtual float LeftMargin() const { return 0; }
    virtual float RightMargin() const { return 0; }
    virtual float TopMargin() const { return 0; }
    virtual float BottomMargin() const { return 0; }
    ///@}
    /// Returns the separator for the next gap, or null for an empty gap. The group does not own it.
    virtual ISeparator* BuildSeparator() { return nullptr; }
    /// Called when the group has stopped using all separators built so far, so that they may be
    /// freed.
    virtual void ClearSeparators() {}
    /// Called during arranging with the point at which the group's content begins.
    virtual void Position(geom::PointT<float> const& inPosition);
    /// Called at the end of arranging with the size of the group.
    virtual void SetDimensions(geom::PointT<float> const& inSize);
    virtual ~DynamicGroup();

    /// The node, to be arranged and to be shown as a child by another group; null if there is none.
    /// A change of the type replaces it by another node.
    IArrangeable* Group() noexcept { return mGroup.get(); }
    IArrangeable const* Group() const noexcept { return mGroup.get(); }

    /// The kind of the node, also of one that could not be made.
    GroupArrangementType ArrangementType() const noexcept { return mType; }
    /// Replaces the node by one of this kind; does nothing if it is of this kind already. The group
    /// whose child the old node was is invalidated, and so finds the new one. A type outside the
    /// enumeration leaves the node as it is.
    void SetArrangementType(GroupArrangementType inType, IArrangeable* inParent = nullptr);

    /// These forward to the node; without one they do nothing.
    void Invalidate();
    void MarkInvalid() noexcept;
    void InvalidateAll();
    void Rearrange();
    void EnableArrangement(bool inEnabled);
    geom::PointT<float> BestSize();
    bool ArrangementEnabled() const;

private:
    void Replace(boost::shared_ptr<impl::AbstractArrangeableGroup> inGroup);

    boost::shared_ptr<impl::AbstractArrangeableGroup> mGroup;
    GroupArrangementType mType;
};

} // namespace brindle::arrange
