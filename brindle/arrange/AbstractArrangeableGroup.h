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

/// A node with children, and the base of every kind of group. A kind adds which alternatives the
/// group offers.
///
/// A client's group derives from a kind (`Row`, `HorizontalWrapping`, …), shows its children
/// through both forms of `VisitChildren`, and overrides whichever of the other operations should
/// differ from the default. The group does not own its children or its separators: a client whose
/// `BuildSeparator` allocates frees them in `ClearSeparators` and in its own destructor.
class BRN_API AbstractArrangeableGroup : public virtual IArrangeable {
public:
    explicit AbstractArrangeableGroup(IArrangeable* inParent = nullptr);
    /// A copy has the same parent. It builds separators of its own when it is measured.
    AbstractArrangeableGroup(AbstractArrangeableGroup const& inOther);
    AbstractArrangeableGroup& operator=(AbstractArrangeableGroup const& inOther);
    ~AbstractArrangeableGroup() override;

    bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const override = 0;
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override = 0;

    virtual float HorizontalSpacing() const { return 0; }
    virtual float VerticalSpacing() const { return 0; }
    virtual AlignmentHorizontal HorizontalAlignment() const { return kAlignmentHorizontal_Left; }
    virtual AlignmentVertical VerticalAlignment() const { return kAlignmentVertical_Top; }
    /// Returns the separator for the next gap, or null for an empty gap. Not owned by the group.
    virtual ISeparator* BuildSeparator() { return nullptr; }
    /// Called when the group has stopped using all separators built so far; the client may free
    /// them.
    virtual void ClearSeparators() {}
    virtual float LeftMargin() const { return 0; }
    virtual float RightMargin() const { return 0; }
    virtual float TopMargin() const { return 0; }
    virtual float BottomMargin() const { return 0; }
    /// Called during arranging with the point at which the group's content begins.
    virtual void Position(geom::PointT<float> const& inPosition);
    /// Called at the end of arranging with the size of the group.
    virtual void SetDimensions(geom::PointT<float> const& inSize);
    /// Adds to the set the layouts of one combination of the children's alternatives.
    virtual void BuildArrangements(ArrangementSet& inSet,
                                   std::vector<boost::intrusive_ptr<IArrangement>> const& inChosen,
                                   std::vector<ISeparator*> const& inSeparators) = 0;
    /// The forms of layout that `BuildArrangements` adds, in the same order. A kind that returns
    /// them is searched over all combinations at once; for a kind that returns none,
    /// `BuildArrangements` is called for each combination.
    virtual std::vector<LayoutForm> Forms() const { return {}; }

    /// Replaces the list of children until the group is measured next, which calls `VisitChildren`
    /// again. Sets no parent and invalidates nothing.
    void SetChildren(std::vector<IArrangeable*>& inChildren) { mChildren = inChildren; }
    /// Rebuilds the separators: clears them, then asks for one for each gap between the children.
    void BuildSeparators();
    /// How many times they were rebuilt. A layout that was made before the last time no longer
    /// places its separators.
    std::uint32_t SeparatorBuilds() const noexcept { return mSeparatorBuilds; }

protected:
    void RebuildSelf() override;
    ArrangementSet& ArrangementsSelf() override { return mArrangements; }

private:
    using Children = std::vector<NodePointer<IArrangeable>>;

    Children CollectChildren();
    [[nodiscard]] bool Combine(Children const& inChildren, ArrangementSet& ioSet);

    std::vector<IArrangeable*> mChildren;
    std::vector<ISeparator*> mSeparators;
    std::uint32_t mSeparatorBuilds = 0;
    ArrangementSet mArrangements;
};

} // namespace brindle::arrange::impl
