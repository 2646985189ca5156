#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/ArrangementSet.h>
#include <brindle/arrange/NodePointer.h>
#include <brindle/geom/Point.h>
#include <brindle/geom/Rect.h>

#include <boost/function.hpp>

#include <memory>

namespace brindle::arrange {

/// A node of a tree that is laid out: a leaf (`Single`) or a group.
///
/// The root of a node is its topmost ancestor; a node without a parent is its own root. The
/// rectangle, and the switch that turns arranging on and off, belong to the root. Nodes do not own
/// each other and may be destroyed in any order; a parent that was destroyed counts as no parent.
///
/// A tree belongs to one thread at a time. Nothing here throws, apart from exceptions of the
/// client's own operations, which pass through.
class BRN_API IArrangeable {
public:
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
    bool ArrangementEnabled() const noexcept { return Root().mIsEnabled; }

    /// To be called when this node looks different: marks it and its ancestors to be measured
    /// again, and rearranges the tree before it returns, unless arranging is switched off.
    void Invalidate();
    /// Invalidates each child and then this node. Does nothing if arranging is switched off.
    void InvalidateAll();

    /// The alternatives of this node, which is measured first if it is invalid.
    impl::ArrangementSet& Arrangements();

    /// Points to true for as long as this node exists and is not retired.
    std::shared_ptr<bool const> Lifeline() const noexcept { return mIsAlive; }
    /// Makes the node count as destroyed, although one of its operations has not returned yet.
    void Retire() noexcept { *mIsAlive = false; }
    /// Whether an operation that measures or arranges this node has not returned yet.
    bool IsAtWork() const noexcept { return mWorkDepth != 0; }

private:
    class Work;

    virtual void RebuildSelf();
    virtual impl::ArrangementSet& ArrangementsSelf() = 0;

    IArrangeable const& Root() const noexcept;
    IArrangeable& Root() noexcept;
    void RebuildIfInvalid();
    void MarkInvalid() noexcept;

    bool mIsValid = false;
    bool mIsEnabled = true;
    bool mIsRebuilding = false;
    int mWorkDepth = 0;
    geom::RectT<float> mRectangle;
    impl::NodePointer<IArrangeable> mParent;
    std::shared_ptr<bool> mIsAlive = std::make_shared<bool>(true);
};

inline IArrangeable* Parent(IArrangeable& inNode) noexcept {
    return inNode.Parent();
}

inline IArrangeable const* Parent(IArrangeable const& inNode) noexcept {
    return inNode.Parent();
}

BRN_API bool VisitChildren(IArrangeable& inNode, boost::function<bool(IArrangeable&)> inFunction);
BRN_API bool VisitChildren(IArrangeable const& inNode,
                           boost::function<bool(IArrangeable const&)> inFunction);

} // namespace brindle::arrange
