#include <brindle/arrange/IArrangeable.h>

#include "arrange/src/tree/Limits.h"
#include "arrange/src/tree/Pass.h"

#include <utility>

namespace brindle::arrange {

namespace {

constexpr int kMostPasses = 5;

thread_local std::uint32_t S_rebuildDepth = 0;

/// Sets a flag, and restores what it was at the end of the scope.
class Raised {
public:
    explicit Raised(bool& ioFlag) : mFlag(ioFlag), mBefore(std::exchange(ioFlag, true)) {}
    Raised(Raised const&) = delete;
    Raised& operator=(Raised const&) = delete;
    ~Raised() { mFlag = mBefore; }

private:
    bool& mFlag;
    bool mBefore;
};

} // namespace

IArrangeable::IArrangeable(IArrangeable* inParent) : mParent(inParent) {}

IArrangeable::IArrangeable(IArrangeable const& inOther)
    : mIsEnabled(inOther.mIsEnabled), mRectangle(inOther.mRectangle), mParent(inOther.mParent) {}

IArrangeable& IArrangeable::operator=(IArrangeable const& inOther) {
    MarkInvalid();
    mIsEnabled = inOther.mIsEnabled;
    mRectangle = inOther.mRectangle;
    mParent = inOther.mParent;
    return *this;
}

IArrangeable::~IArrangeable() {
    *mIsAlive = false;
}

bool IArrangeable::VisitChildren(boost::function<bool(IArrangeable const&)>) const {
    return true;
}

bool IArrangeable::VisitChildren(boost::function<bool(IArrangeable&)>) {
    return true;
}

geom::PointT<float> IArrangeable::Arrange(geom::RectT<float> const& inRect) {
    if (IArrangeable& root = Root(); &root != this) {
        return root.Arrange(inRect);
    }
    if (!(inRect.width > 0) || !(inRect.height > 0) || !mIsEnabled) {
        return {};
    }
    impl::Pass const pass;
    Raised const arranging(mIsArranging);
    geom::RectT<float> const rect = inRect;
    mRectangle = rect;
    mLimits &= ~std::uint32_t{kLayoutLimit_Passes};
    geom::PointT<float> size;
    for (int count = 0; count < kMostPasses; ++count) {
        RebuildIfInvalid();
        size = ArrangementsSelf().Arrange(rect);
        if (mIsValid || !*mIsAlive) {
            return size;
        }
    }
    NoteLimits(kLayoutLimit_Passes);
    return size;
}

void IArrangeable::Rearrange() {
    IArrangeable& root = Root();
    root.Arrange(root.mRectangle);
}

geom::PointT<float> IArrangeable::BestSize() {
    impl::Pass const pass;
    return Arrangements().BestSize();
}

void IArrangeable::EnableArrangement(bool inEnabled) {
    IArrangeable& root = Root();
    if (root.mIsEnabled == inEnabled) {
        return;
    }
    root.mIsEnabled = inEnabled;
    if (inEnabled) {
        root.Rearrange();
    }
}

void IArrangeable::Invalidate() {
    MarkInvalid();
    if (IArrangeable& root = Root(); root.mIsEnabled) {
        root.Rearrange();
    }
}

void IArrangeable::InvalidateAll() {
    if (!ArrangementEnabled()) {
        return;
    }
    impl::Pass const pass;
    arrange::VisitChildren(*this, [](IArrangeable& inChild) {
        inChild.Invalidate();
        return true;
    });
    Invalidate();
}

impl::ArrangementSet& IArrangeable::Arrangements() {
    impl::Pass const pass;
    RebuildIfInvalid();
    if (*mIsAlive) {
        return ArrangementsSelf();
    }
    // The client replaced this node while it was measured; it is destroyed when the pass ends.
    static thread_local impl::ArrangementSet S_none;
    S_none.Clear();
    return S_none;
}

void IArrangeable::RebuildSelf() {}

/// If the parents form a ring there is no topmost one, and each node of the ring is its own root.
IArrangeable const& IArrangeable::Root() const noexcept {
    IArrangeable const* root = this;
    IArrangeable const* slow = this;
    for (bool moveSlow = false; IArrangeable const* const parent = root->Parent();
         moveSlow = !moveSlow) {
        root = parent;
        if (root == slow) {
            return *this;
        }
        if (moveSlow) {
            slow = slow->Parent();
        }
    }
    return *root;
}

IArrangeable& IArrangeable::Root() noexcept {
    return const_cast<IArrangeable&>(std::as_const(*this).Root());
}

/// Marks this node and its ancestors up to the first that is invalid already; so it also ends where
/// parents form a ring.
void IArrangeable::MarkInvalid() noexcept {
    for (IArrangeable* node = this; node != nullptr && std::exchange(node->mIsValid, false);) {
        node = node->Parent();
    }
}

void IArrangeable::NoteChange() {
    if (Root().mIsArranging) {
        MarkInvalid();
    } else {
        Invalidate();
    }
}

void IArrangeable::RebuildIfInvalid() {
    // A node that is found among its own descendants is left out there, and so are nodes that stand
    // deeper than the stack allows. The children of a retired node belong to its successor.
    if (mIsValid || mIsRebuilding || !*mIsAlive) {
        return;
    }
    if (S_rebuildDepth == impl::kDeepestTree) {
        NoteLimits(kLayoutLimit_Depth);
        return;
    }
    struct Rebuilding {
        explicit Rebuilding(IArrangeable& ioNode) : mNode(ioNode) {
            ++S_rebuildDepth;
            mNode.mIsRebuilding = true;
        }
        Rebuilding(Rebuilding const&) = delete;
        Rebuilding& operator=(Rebuilding const&) = delete;
        ~Rebuilding() {
            mNode.mIsRebuilding = false;
            --S_rebuildDepth;
        }
        IArrangeable& mNode;
    } const rebuilding(*this);
    mLimits = 0;
    RebuildSelf();
    mIsValid = true;
}

bool VisitChildren(IArrangeable& inNode, boost::function<bool(IArrangeable&)> inFunction) {
    return inNode.VisitChildren(std::move(inFunction));
}

bool VisitChildren(IArrangeable const& inNode,
                   boost::function<bool(IArrangeable const&)> inFunction) {
    return inNode.VisitChildren(std::move(inFunction));
}

} // namespace brindle::arrange
