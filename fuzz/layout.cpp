// Layout: a client that builds an arbitrary graph of nodes of arbitrary sizes, and calls any
// operation at any time, also from within its own operations. It only sees to it that no group
// shows a node that was destroyed.

#include "tests/arrange/Scene.h"

#include <cstdint>
#include <cstdlib>
#include <random>

namespace {

using namespace brindle::arrange;
using tests::Looks;

constexpr int kItems = 10;
constexpr int kGroups = 5;
// Only these may offer more than one layout of their children, since the numbers multiply.
constexpr int kGroupsOfAnyKind = 3;
constexpr int kMostChildren = 3;
constexpr int kMostOperations = 64;
constexpr int kMostInterruptions = 16;

/// Does what the bytes say.
struct Client {
    Client(std::uint8_t const* inData, std::size_t inSize) : mNext(inData), mEnd(inData + inSize) {
        for (int item = 0; item < kItems; ++item) {
            mScene.Add(AnyLooks(item));
        }
        for (int group = 0; group < kGroups; ++group) {
            ShowAny(group);
        }
        // Every operation of the client's objects may change the tree.
        mScene.onCall = [this](tests::Call const& inCall) {
            ++mCalls;
            if (inCall.name == "NaN") {
                std::abort(); // no leaf is ever offered NaN
            }
            if (mInterruptionsLeft > 0 && mCallsToInterruption-- == 0) {
                --mInterruptionsLeft;
                mCallsToInterruption = Byte();
                Operate(true);
            }
        };
    }

    void Run() {
        for (int count = 0; count < kMostOperations && mNext != mEnd; ++count) {
            try {
                Operate(false);
            } catch (Refusal const&) {
                // The tree has to stay usable.
            }
        }
        mInterruptionsLeft = 0;
        for (int item = 0; item < kItems; ++item) {
            if (IArrangeable* const node = mScene.Node(item)) {
                node->EnableArrangement(true);
                node->Invalidate();
                node->Arrange({0, 0, 640, 480});
            }
        }
    }

    /// What the client's operations throw.
    struct Refusal {};

    int Byte() { return mNext == mEnd ? 0 : *mNext++; }
    int Pick(std::size_t inCount) { return Byte() % static_cast<int>(inCount); }

    /// Small whole sizes, and all kinds of odd ones.
    static float Size(int inByte) {
        constexpr float kMax = std::numeric_limits<float>::max(), kInf = tests::kUnlimited;
        constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
        constexpr float kOdd[] = {0,     -1,   -1000, 0.1F, 1e-30F, 33.333333F, 16777217.0F,
                                  1e20F, kMax, -kMax, kInf, -kInf,  kNan};
        return inByte < static_cast<int>(std::size(kOdd)) ? kOdd[inByte]
                                                          : static_cast<float>(inByte);
    }

    /// One byte decides all answers, so that short inputs get as far as operations.
    struct Answers {
        int Pick(std::size_t inCount) { return static_cast<int>(random() % inCount); }
        float Length(std::size_t) { return Size(Pick(256)); }
        std::minstd_rand random;
    };

    Looks AnyLooks(int inItem) {
        Looks looks;
        if (inItem < kGroups) {
            looks.isDynamic = Pick(3) == 0;
            looks.kind = AnyKind(inItem, looks.isDynamic);
        }
        Answers answers{std::minstd_rand(static_cast<unsigned>(Byte()) + 1)};
        AnswerAnew(looks, answers, 0);
        return looks;
    }

    /// A dynamic group may also be of no kind.
    int AnyKind(int inGroup, bool inIsDynamic) {
        return Pick(inGroup >= kGroupsOfAnyKind ? 2 : inIsDynamic ? 7 : 6);
    }

    void SetType(int inGroup) {
        if (DynamicGroup* const group = mScene.Dynamic(inGroup)) {
            group->SetArrangementType(static_cast<GroupArrangementType>(AnyKind(inGroup, true)));
        }
    }

    /// Any items: also one twice, an ancestor, or the group itself.
    void ShowAny(int inGroup) {
        std::vector<int>& children = mScene.Of(inGroup).children;
        children.resize(static_cast<std::size_t>(Pick(kMostChildren + 1)));
        std::generate(children.begin(), children.end(), [this] { return Pick(kItems); });
    }

    void CopyTo(Single& outLeaf) { outLeaf = dynamic_cast<Single&>(*mScene.Node(kItems - 1)); }

    /// Before the old item is destroyed, the groups show nothing or its successor in its place; the
    /// library is not notified.
    void Replace(int inItem) {
        Looks looks = AnyLooks(inItem);
        looks.children = mScene.Of(inItem).children;
        mScene.Of(inItem) = looks;
        auto const old = mScene.Renew(inItem);
        for (int group = Pick(2) * kGroups; group < kGroups; ++group) {
            std::vector<int>& children = mScene.Of(group).children;
            children.erase(std::remove(children.begin(), children.end(), inItem), children.end());
        }
    }

    void Arrange(IArrangeable& ioNode) {
        brindle::geom::RectT<float> const rect{Size(Byte()), Size(Byte()), Size(Byte()),
                                               Size(Byte())};
        bool const isNothing =
            !(rect.width > 0) || !(rect.height > 0) || !ioNode.ArrangementEnabled();
        int const callsBefore = mCalls;
        auto const size = ioNode.Arrange(rect);
        if (isNothing && (mCalls != callsBefore || size.x != 0 || size.y != 0)) {
            std::abort();
        }
    }

    /// Everything that a client may do. From within operations, nodes are neither replaced nor
    /// assigned to.
    void Operate(bool inIsAtWork) {
        int const item = Pick(kItems);
        IArrangeable* const node = mScene.Node(item);
        auto* const group = dynamic_cast<impl::AbstractArrangeableGroup*>(node);
        auto* const leaf = dynamic_cast<Single*>(node);
        if (node == nullptr) {
            return SetType(item);
        }
        std::function<void()> const operations[] = {
            [&] { SetType(item % kGroups); },
            [&] { ShowAny(item % kGroups); },
            [&] { Arrange(*node); },
            [&] { node->EnableArrangement(Pick(2) != 0); },
            [&] { node->SetParent(mScene.Node(Pick(kItems))); },
            [&] { node->Invalidate(); },
            [&] { node->InvalidateAll(); },
            [&] { node->Rearrange(); },
            [&] { node->BestSize(); },
            [&] { node->Arrangements().Clear(); },
            [&] { group != nullptr ? group->BuildSeparators() : throw Refusal(); },
            [&] { Replace(item); },
            [&] { leaf != nullptr ? CopyTo(*leaf) : Replace(item); }};
        operations[Pick(std::size(operations) - (inIsAtWork ? 2 : 0))]();
    }

    std::uint8_t const* mNext;
    std::uint8_t const* mEnd;
    int mCalls = 0;
    int mInterruptionsLeft = kMostInterruptions;
    int mCallsToInterruption = 8;
    tests::Scene mScene;
};

} // namespace

/// The bytes hold the looks of the items, the children of the groups, and then operations.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    Client(inData, inSize).Run();
    return 0;
}
