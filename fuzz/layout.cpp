// Layout: a client that builds any graph of nodes, of any sizes, and does anything to it at any
// time, from within its own operations too, as long as a group no longer shows a node that it
// destroys.

#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/Groups.h>
#include <brindle/arrange/Single.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <vector>

namespace {

using namespace brindle::arrange;
using brindle::geom::PointT;
using brindle::geom::RectT;

constexpr std::size_t kItems = 10;
constexpr std::size_t kGroups = 5;
// These alone offer more than one layout of their children, whose numbers multiply.
constexpr std::size_t kGroupsOfAnyKind = 3;
constexpr std::size_t kMostChildren = 3;
constexpr int kMostOperations = 64;
constexpr int kMostInterruptions = 16;

void Require(bool inHolds) {
    if (!inHolds) {
        std::abort();
    }
}

class Bytes {
public:
    Bytes(std::uint8_t const* inData, std::size_t inSize) : mNext(inData), mEnd(inData + inSize) {}

    bool IsAtEnd() const { return mNext == mEnd; }
    std::uint8_t Byte() { return IsAtEnd() ? std::uint8_t{0} : *mNext++; }
    std::size_t Below(std::size_t inLimit) { return Byte() % inLimit; }
    bool Bit() { return Byte() & 1; }

    /// Plain sizes, and every kind of odd one.
    float Size() {
        constexpr float kOdd[] = {0,
                                  -1,
                                  -1000,
                                  0.1F,
                                  1e-30F,
                                  33.333333F,
                                  16777217.0F,
                                  1e20F,
                                  std::numeric_limits<float>::max(),
                                  std::numeric_limits<float>::lowest(),
                                  std::numeric_limits<float>::infinity(),
                                  -std::numeric_limits<float>::infinity(),
                                  std::numeric_limits<float>::quiet_NaN()};
        std::uint8_t const byte = Byte();
        return byte < std::size(kOdd) ? kOdd[byte] : static_cast<float>(byte);
    }

private:
    std::uint8_t const* mNext;
    std::uint8_t const* mEnd;
};

class Client;

/// What the client throws out of its operations.
struct Refusal {};

/// A leaf, a group or a dynamic group.
class Item {
public:
    virtual ~Item() = default;
    /// Null for a dynamic group without a group.
    virtual IArrangeable* Node() = 0;
    virtual DynamicGroup* AsDynamicGroup() { return nullptr; }
    virtual impl::AbstractArrangeableGroup* AsGroup() { return nullptr; }

    std::vector<Item*> children;
};

class Separator final : public ISeparator {
public:
    explicit Separator(Client& ioClient) : mClient(&ioClient) {}
    void Place(SeparatorOrientation inOrientation, RectT<float> const& inRect) override;

private:
    Client* mClient;
};

/// Told its looks by bytes.
class Leaf final : public Item, public Single {
public:
    Leaf(Client& ioClient, Bytes& ioBytes)
        : mClient(&ioClient), mFlags(ioBytes.Byte()), mBestWidth(ioBytes.Size()),
          mBestHeight(ioBytes.Size()), mMinWidth(ioBytes.Size()), mMinHeight(ioBytes.Size()),
          mLimit(ioBytes.Size()), mMargin(ioBytes.Size()) {}

    IArrangeable* Node() override { return this; }

    float BestWidth() const override;
    float BestHeight() const override { return mBestHeight; }
    float MinWidth() const override { return mFlags & 1 ? mMinWidth : Single::MinWidth(); }
    float MinHeight() const override { return mFlags & 1 ? mMinHeight : mBestHeight; }
    bool HorizontallyExpandable() const override { return mFlags & 2; }
    bool VerticallyExpandable() const override { return mFlags & 4; }
    float ExpandedWidth(float inAvailable) const override {
        float const expanded = Single::ExpandedWidth(inAvailable);
        return mFlags & 8 ? std::min(expanded, mLimit) : expanded;
    }
    float LeftMargin() const override { return mFlags & 16 ? mMargin : 0; }
    float BottomMargin() const override { return mFlags & 16 ? mMargin : 0; }
    PointT<float> ArrangeContent(RectT<float> const& inRect) override;

private:
    Client* mClient;
    std::uint8_t mFlags;
    float mBestWidth;
    float mBestHeight;
    float mMinWidth;
    float mMinHeight;
    float mLimit;
    float mMargin;
};

/// The operations of a client's group, which `Base` asks for: a kind of group or `DynamicGroup`.
template <typename Base>
class GroupItem final : public Item, public Base {
public:
    template <typename... Arguments>
    GroupItem(Client& ioClient, Bytes& ioBytes, Arguments... inArguments)
        : Base(inArguments...), mClient(&ioClient), mFlags(ioBytes.Byte()),
          mAlignment(static_cast<std::int32_t>(ioBytes.Below(4))), mSpacing(ioBytes.Size()),
          mMargin(ioBytes.Size()) {}

    IArrangeable* Node() override {
        if constexpr (std::is_same_v<Base, DynamicGroup>) {
            return this->Group();
        } else {
            return this;
        }
    }
    DynamicGroup* AsDynamicGroup() override {
        if constexpr (std::is_same_v<Base, DynamicGroup>) {
            return this;
        }
        return nullptr;
    }
    impl::AbstractArrangeableGroup* AsGroup() override {
        return dynamic_cast<impl::AbstractArrangeableGroup*>(Node());
    }

    bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const override {
        return Visit(inFunction);
    }
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override {
        return Visit(inFunction);
    }
    float HorizontalSpacing() const override;
    float VerticalSpacing() const override { return mFlags & 1 ? mSpacing : 0; }
    AlignmentHorizontal HorizontalAlignment() const override {
        return static_cast<AlignmentHorizontal>(mAlignment);
    }
    AlignmentVertical VerticalAlignment() const override {
        return static_cast<AlignmentVertical>(mAlignment);
    }
    float LeftMargin() const override { return mFlags & 2 ? mMargin : 0; }
    float BottomMargin() const override { return mFlags & 2 ? mMargin : 0; }
    ISeparator* BuildSeparator() override;
    void ClearSeparators() override { mSeparators.clear(); }
    void Position(PointT<float> const& inPosition) override;
    void SetDimensions(PointT<float> const& inSize) override;

private:
    template <typename Function>
    bool Visit(Function const& inFunction) const {
        // What is called may change the list.
        std::vector<Item*> const visited = children;
        for (Item* const child : visited) {
            IArrangeable* const node = child->Node();
            if (node != nullptr && !inFunction(*node)) {
                return false;
            }
        }
        return true;
    }

    Client* mClient;
    std::uint8_t mFlags;
    std::int32_t mAlignment;
    float mSpacing;
    float mMargin;
    std::vector<std::unique_ptr<Separator>> mSeparators;
};

class Client {
public:
    explicit Client(Bytes& ioBytes) : mBytes(ioBytes) {
        for (std::size_t index = 0; index < kItems; ++index) {
            mItems[index] = Make(index);
        }
        for (std::size_t index = 0; index < kGroups; ++index) {
            SetChildren(*mItems[index]);
        }
    }

    void Run() {
        for (int count = 0; count < kMostOperations && !mBytes.IsAtEnd(); ++count) {
            try {
                Operate();
            } catch (Refusal const&) {
                // The tree stays as usable as it was.
            }
        }
        mInterruptionsLeft = 0;
        for (auto const& item : mItems) {
            if (IArrangeable* const node = item->Node()) {
                node->EnableArrangement(true);
                node->Invalidate();
                node->Arrange({0, 0, 640, 480});
            }
        }
    }

    /// Every operation of the client's objects comes by here, and may do something to the tree.
    void Interrupt() {
        ++mCalls;
        if (mInterruptionsLeft == 0 || mCallsToInterruption-- > 0) {
            return;
        }
        --mInterruptionsLeft;
        mCallsToInterruption = mBytes.Byte();
        IArrangeable* const node = AnyNode();
        if (node == nullptr) {
            return;
        }
        switch (mBytes.Below(8)) {
        case 0:
        case 1:
            node->Invalidate();
            break;
        case 2:
            node->InvalidateAll();
            break;
        case 3:
            node->EnableArrangement(mBytes.Bit());
            break;
        case 4:
            node->Arrangements().Clear();
            break;
        case 5:
            throw Refusal();
        case 6:
            SetChildren(*mItems[mBytes.Below(kGroups)]);
            node->Invalidate();
            break;
        default:
            SetType();
        }
    }

private:
    template <typename Kind>
    std::unique_ptr<Item> MakeGroup() {
        return std::make_unique<GroupItem<Kind>>(*this, mBytes);
    }

    std::unique_ptr<Item> Make(std::size_t inIndex) {
        if (inIndex >= kGroups) {
            return std::make_unique<Leaf>(*this, mBytes);
        }
        switch (mBytes.Below(inIndex < kGroupsOfAnyKind ? 9 : 3)) {
        case 0:
            return std::make_unique<GroupItem<DynamicGroup>>(*this, mBytes, nullptr, Type(inIndex));
        case 1:
            return MakeGroup<Row>();
        case 2:
            return MakeGroup<Column>();
        case 3:
            return MakeGroup<Flipping>();
        case 4:
            return MakeGroup<HorizontalWrapping>();
        case 5:
            return MakeGroup<VerticalWrapping>();
        case 6:
            return MakeGroup<AutoLayout>();
        default:
            return std::make_unique<GroupItem<DynamicGroup>>(*this, mBytes, nullptr, Type(inIndex));
        }
    }

    /// One of them is no kind at all.
    GroupArrangementType Type(std::size_t inIndex) {
        return static_cast<GroupArrangementType>(mBytes.Below(inIndex < kGroupsOfAnyKind ? 7 : 2));
    }

    IArrangeable* AnyNode() { return mItems[mBytes.Below(kItems)]->Node(); }

    /// Any items: one twice, an ancestor, itself.
    void SetChildren(Item& ioItem) {
        ioItem.children.clear();
        for (std::size_t count = mBytes.Below(kMostChildren + 1); count > 0; --count) {
            ioItem.children.push_back(mItems[mBytes.Below(kItems)].get());
        }
    }

    void SetType() {
        std::size_t const index = mBytes.Below(kGroups);
        if (DynamicGroup* const group = mItems[index]->AsDynamicGroup()) {
            group->SetArrangementType(Type(index), nullptr);
        }
    }

    /// Before the old item goes, it is taken out of what the groups show; nobody is told.
    void Replace() {
        std::size_t const index = mBytes.Below(kItems);
        std::unique_ptr<Item> item = Make(index);
        bool const isShownInItsPlace = mBytes.Bit();
        if (mBytes.Bit()) {
            item->children = mItems[index]->children;
        }
        item.swap(mItems[index]);
        for (std::size_t group = 0; group < kGroups; ++group) {
            std::vector<Item*>& children = mItems[group]->children;
            if (isShownInItsPlace) {
                std::replace(children.begin(), children.end(), item.get(), mItems[index].get());
            } else {
                children.erase(std::remove(children.begin(), children.end(), item.get()),
                               children.end());
            }
        }
    }

    void Arrange(IArrangeable& ioNode) {
        RectT<float> const rect{mBytes.Size(), mBytes.Size(), mBytes.Size(), mBytes.Size()};
        bool const isNothing =
            !(rect.width > 0) || !(rect.height > 0) || !ioNode.ArrangementEnabled();
        int const callsBefore = mCalls;
        PointT<float> const size = ioNode.Arrange(rect);
        Require(!isNothing || (mCalls == callsBefore && size.x == 0 && size.y == 0));
    }

    void Operate() {
        std::uint8_t const operation = mBytes.Byte();
        IArrangeable* const node = AnyNode();
        Item& group = *mItems[mBytes.Below(kGroups)];
        if (node == nullptr) {
            return SetType();
        }
        switch (operation % 16) {
        case 0:
            return node->Invalidate();
        case 1:
            return node->InvalidateAll();
        case 2:
            return node->EnableArrangement(mBytes.Bit());
        case 3:
            return SetType();
        case 4:
            return node->Arrangements().Clear();
        case 5:
            node->BestSize();
            return;
        case 6:
            if (group.AsGroup() != nullptr) {
                group.AsGroup()->BuildSeparators();
            }
            return;
        case 7:
            return node->SetParent(mBytes.Bit() ? AnyNode() : nullptr);
        case 8:
            return SetChildren(group);
        case 9:
            return node->Rearrange();
        case 10:
        case 11:
            return Replace();
        case 12: {
            auto* const leaf = dynamic_cast<Leaf*>(node);
            auto* const other = dynamic_cast<Leaf*>(mItems[kItems - 1].get());
            if (leaf != nullptr) {
                static_cast<Single&>(*leaf) = *other;
            }
            return;
        }
        default:
            return Arrange(*node);
        }
    }

    Bytes& mBytes;
    std::unique_ptr<Item> mItems[kItems];
    int mCalls = 0;
    int mInterruptionsLeft = kMostInterruptions;
    int mCallsToInterruption = 8;
};

void Separator::Place(SeparatorOrientation, RectT<float> const&) {
    mClient->Interrupt();
}

float Leaf::BestWidth() const {
    mClient->Interrupt();
    return mBestWidth;
}

/// Takes what it was given, or something else.
PointT<float> Leaf::ArrangeContent(RectT<float> const& inRect) {
    mClient->Interrupt();
    return mFlags & 32 ? PointT<float>{mMinWidth, mLimit}
                       : PointT<float>{inRect.width, inRect.height};
}

template <typename Base>
float GroupItem<Base>::HorizontalSpacing() const {
    mClient->Interrupt();
    return mFlags & 1 ? mSpacing : 0;
}

template <typename Base>
ISeparator* GroupItem<Base>::BuildSeparator() {
    mClient->Interrupt();
    if (mFlags & 4) {
        mSeparators.push_back(std::make_unique<Separator>(*mClient));
        return mSeparators.back().get();
    }
    return nullptr;
}

template <typename Base>
void GroupItem<Base>::Position(PointT<float> const&) {
    mClient->Interrupt();
}

template <typename Base>
void GroupItem<Base>::SetDimensions(PointT<float> const&) {
    mClient->Interrupt();
}

} // namespace

/// The looks of the items, the children of the groups, and then operations until the bytes end.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    Bytes bytes(inData, inSize);
    Client(bytes).Run();
    return 0;
}
