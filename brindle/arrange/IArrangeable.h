#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/ArrangementSet.h>
#include <brindle/arrange/NodePointer.h>
#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>
#include <brindle/utility/BoostFunction.h>

#include <cstdint>
#include <memory>

namespace brindle::arrange {

/// A limit of the engine that the layout of a tree can run into. The values are bits.
enum LayoutLimit : std::uint32_t {
    kLayoutLimit_Depth = 1,  ///< nodes deeper than 2,000 levels are left out
    kLayoutLimit_Count = 2,  ///< alternatives made of more than 2^20 others are left out
    kLayoutLimit_Breaks = 4, ///< not all ways to break a group into lines were compared
    kLayoutLimit_Passes = 8  ///< the tree was still invalid after 5 passes
};

/// A node of a tree that is laid out: a leaf (`Single`) or a group.
///
/// The root of a node is its topmost ancestor; a node without a parent is its own root. The
/// rectangle, and the switch that turns arranging on and off, belong to the root. Nodes do not own
/// each other and may be destroyed in any order, except that no node may be destroyed from within
/// one of its own operations; a parent that was destroyed counts as no parent.
///
/// A tree belongs to one thread at a time. Nothing here throws, apart from exceptions of the
/// client's own operations, which pass through.
class BRN_API IArrangeable {
public:
    /// Sets the parent, which may be null and is not owned.
    explicit IArrangeable(IArrangeable* inParent = nullptr);
    /// A copy has the same parent and is not measured yet.
    IArrangeable(IArrangeable const& inOther);
    /// Marks this node and its ancestors to be measured again when they are arranged next.
    IArrangeable& operator=(IArrangeable const& inOther);
    virtual ~IArrangeable();

    /// Calls the function for each child in order until it returns false. Returns whether it
    /// returned true for all of them. A leaf has no children; a group's client overrides both
    /// forms.
    virtual bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const;
    virtual bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction);

    /// Sets the parent and nothing else. A group sets it for its children when it is measured.
    void SetParent(IArrangeable* inParent) { mParent = impl::NodePointer<IArrangeable>(inParent); }
    /// The parent, or null for a root. A parent that was destroyed is null.
    IArrangeable* Parent() noexcept { return mParent.Get(); }
    IArrangeable const* Parent() const noexcept { return mParent.Get(); }

    /// Arranges the whole tree in the rectangle, which is always the root's: every leaf and group
    /// is given its place. Returns the size taken. If the width or the height is not above 0, or
    /// arranging is switched off, nothing happens and the result is (0, 0).
    ///
    /// A tree that is invalid again at the end of a pass is measured and arranged once more, up to
    /// 5 passes in all.
    geom::PointT<float> Arrange(geom::RectT<float> const& inRect);
    /// Arranges the tree in the rectangle of the last `Arrange`.
    void Rearrange();

    /// A good size to open a window at: the minimum size of the alternative that is nearest the
    /// golden ratio. (0, 0) without alternatives.
    geom::PointT<float> BestSize();

    /// Switches arranging of the whole tree on or off. Switching it on rearranges the tree, so a
    /// client that makes many changes switches it off before and on afterwards, and pays for one
    /// rearrangement.
    void EnableArrangement(bool inEnabled);
    /// False between `EnableArrangement(false)` and `EnableArrangement(true)` anywhere in the tree.
    bool ArrangementEnabled() const noexcept { return Root().mIsEnabled; }

    /// To be called when this node looks different: marks it and its ancestors to be measured
    /// again, and rearranges the tree before it returns, unless arranging is switched off.
    void Invalidate();
    /// Marks this node and its ancestors to be measured again, and arranges nothing: the next pass
    /// does the rest. This is the operation for a client that finds out while it is arranged, in
    /// `ArrangeContent`, `Position` or `SetDimensions`, that it needs another size. The `Arrange`
    /// under way then has another pass, where `Invalidate` would arrange the tree at once, from
    /// within, and the rest of the pass would still follow the old measures. Outside of arranging,
    /// the marks take effect with the next `Arrange`, `Rearrange` or `BestSize`.
    void MarkInvalid() noexcept;
    /// Calls `MarkInvalid` while the tree is being arranged on this thread, and `Invalidate` at any
    /// other time: the operation for a change that may be made from anywhere.
    void NoteChange();
    /// Invalidates each child and then this node. Does nothing if arranging is switched off.
    void InvalidateAll();

    /// The alternatives of this node, which is measured first if it is invalid.
    impl::ArrangementSet& Arrangements();

    /// The limits that this node and its descendants reached when they were last measured and
    /// arranged, as bits of `LayoutLimit`; 0 if the layout is all that the tree asks for.
    std::uint32_t LimitsReached() const noexcept { return mLimits; }
    /// For the engine: adds to `LimitsReached` until the node is measured again.
    void NoteLimits(std::uint32_t inLimits) noexcept { mLimits |= inLimits; }

    /// Points to true for as long as this node exists and is not retired.
    std::shared_ptr<bool const> Lifeline() const noexcept { return mIsAlive; }
    /// Makes the node count as destroyed, although one of its operations has not returned yet.
    void Retire() noexcept { *mIsAlive = false; }

private:
    virtual void RebuildSelf();
    virtual impl::ArrangementSet& ArrangementsSelf() = 0;

    IArrangeable const& Root() const noexcept;
    IArrangeable& Root() noexcept;
    void RebuildIfInvalid();

    bool mIsValid = false;
    bool mIsEnabled = true;
    bool mIsRebuilding = false;
    bool mIsArranging = false;
    std::uint32_t mLimits = 0;
    geom::RectT<float> mRectangle;
    impl::NodePointer<IArrangeable> mParent;
    std::shared_ptr<bool> mIsAlive = std::make_shared<bool>(true);
};

///@{
/// The member functions of these names, for code that does not see the class of the node.
inline IArrangeable* Parent(IArrangeable& inNode) noexcept {
    return inNode.Parent();
}

inline IArrangeable const* Parent(IArrangeable const& inNode) noexcept {
    return inNode.Parent();
}

BRN_API bool VisitChildren(IArrangeable& inNode, boost::function<bool(IArrangeable&)> inFunction);
BRN_API bool VisitChildren(IArrangeable const& inNode,
                           boost::function<bool(IArrangeable const&)> inFunction);
///@}

} // namespace brindle::arrange
