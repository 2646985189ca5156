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
/// rectangle and the switch that turns arranging on and off are the root's. Nodes do not own each
/// other and may go in any order: a parent that is gone is no parent.
///
/// A tree belongs to one thread at a time. Nothing here throws; what a client's own operation
/// throws passes through.
class BRN_API IArrangeable {
public:
    explicit IArrangeable(IArrangeable* inParent = nullptr);
    /// A copy has the same parent and has not been measured yet.
    IArrangeable(IArrangeable const& inOther);
    /// What this node was part of is measured anew too, when it is arranged next.
    IArrangeable& operator=(IArrangeable const& inOther);
    virtual ~IArrangeable();

    /// Calls the function for each child in order, until it returns false; false then. A leaf has
    /// none. A group's are told by the client.
    virtual bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const;
    virtual bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction);

    /// Sets the parent and nothing else. A group does it for the children that it finds.
    void SetParent(IArrangeable* inParent) { mParent = impl::NodePointer<IArrangeable>(inParent); }
    IArrangeable* Parent() noexcept { return mParent.Get(); }
    IArrangeable const* Parent() const noexcept { return mParent.Get(); }

    /// Arranges the whole tree in the rectangle, which always is the root's: every leaf and group
    /// hears its place. Result: the size taken. Without a width and a height above 0, or with
    /// arranging switched off, nothing happens and the result is (0, 0).
    ///
    /// A client that invalidates the root while it is arranged has another pass, up to 5
    /// altogether.
    geom::PointT<float> Arrange(geom::RectT<float> const& inRect);
    /// Arranges the tree in the rectangle that it had last.
    void Rearrange();

    /// The size at which this node looks best, which all of its content fits in.
    geom::PointT<float> BestSize();

    /// Switches arranging of the whole tree on or off; when it comes on, the tree is rearranged.
    /// Wrap many changes in it and pay for one rearrangement.
    void EnableArrangement(bool inEnabled);
    bool ArrangementEnabled() const noexcept { return Root().mIsEnabled; }

    /// This node looks different now: it and what it is part of will be measured anew. Rearranges
    /// the tree before it returns, unless arranging is switched off.
    void Invalidate();
    /// Invalidates each child and then this node; nothing if arranging is switched off.
    void InvalidateAll();

    /// The alternatives of this node, measured anew if it was invalid.
    impl::ArrangementSet& Arrangements();

    /// True as long as this node exists and is not retired.
    std::shared_ptr<bool const> Lifeline() const noexcept { return mIsAlive; }
    /// From now on the node counts as gone, although an operation of it has not returned yet.
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
