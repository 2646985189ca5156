#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/Alignment.h>
#include <brindle/arrange/IArrangeable.h>
#include <brindle/arrange/ISeparator.h>
#include <brindle/arrange/LayoutForm.h>
#include <brindle/arrange/NodePointer.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <cstdint>
#include <vector>

namespace brindle::arrange::impl {

/// A node with children. What a kind of group adds is which alternatives it offers.
///
/// A client's group tells its children by both forms of `VisitChildren`, and overrides what it
/// wants to be different here. A client whose `BuildSeparator` allocates frees the separators in
/// its `ClearSeparators` and when it goes itself.
class BRN_API AbstractArrangeableGroup : public virtual IArrangeable {
public:
    explicit AbstractArrangeableGroup(IArrangeable* inParent = nullptr);
    /// A copy has its own separators, once it is measured.
    AbstractArrangeableGroup(AbstractArrangeableGroup const& inOther);
    AbstractArrangeableGroup& operator=(AbstractArrangeableGroup const& inOther);
    ~AbstractArrangeableGroup() override;

    bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const override = 0;
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override = 0;

    virtual float HorizontalSpacing() const { return 0; }
    virtual float VerticalSpacing() const { return 0; }
    virtual AlignmentHorizontal HorizontalAlignment() const { return kAlignmentHorizontal_Left; }
    virtual AlignmentVertical VerticalAlignment() const { return kAlignmentVertical_Top; }
    /// The separator for the next gap, or null for an empty one. Not owned.
    virtual ISeparator* BuildSeparator() { return nullptr; }
    /// The separators built so far are not used any more.
    virtual void ClearSeparators() {}
    virtual float LeftMargin() const { return 0; }
    virtual float RightMargin() const { return 0; }
    virtual float TopMargin() const { return 0; }
    virtual float BottomMargin() const { return 0; }
    /// Hears where the group's content begins.
    virtual void Position(geom::PointT<float> const& inPosition);
    /// Hears the group's size after arranging.
    virtual void SetDimensions(geom::PointT<float> const& inSize);
    /// Adds the layouts of one combination of the children's alternatives to the set.
    virtual void BuildArrangements(ArrangementSet& inSet,
                                   std::vector<boost::intrusive_ptr<IArrangement>> const& inChosen,
                                   std::vector<ISeparator*> const& inSeparators) = 0;
    /// The families that `BuildArrangements` adds, in its order, for a kind of group whose layouts
    /// can be searched over all combinations at once. None: each combination is built by itself.
    virtual std::vector<LayoutForm> Forms() const { return {}; }

    /// Replaces the list of children. No parent is set and nothing is invalidated; the next
    /// measuring asks `VisitChildren` again.
    void SetChildren(std::vector<IArrangeable*>& inChildren) { mChildren = inChildren; }
    /// Has the separators built anew, one for each gap between the children.
    void BuildSeparators();
    /// How often they were built: separators of an earlier time are not used any more.
    std::uint32_t SeparatorBuilds() const noexcept { return mSeparatorBuilds; }

private:
    void RebuildSelf() override;
    ArrangementSet& ArrangementsSelf() override { return mArrangements; }

    using Children = std::vector<NodePointer<IArrangeable>>;

    Children CollectChildren();
    bool Combine(Children const& inChildren, ArrangementSet& ioSet);

    std::vector<IArrangeable*> mChildren;
    std::vector<ISeparator*> mSeparators;
    std::uint32_t mSeparatorBuilds = 0;
    ArrangementSet mArrangements;
};

} // namespace brindle::arrange::impl
