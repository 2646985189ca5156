#include "tests/arrange/Scene.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>

namespace brindle::arrange::tests {
namespace {

using Action = std::function<void()>;
constexpr geom::RectT<float> kPage{0, 0, 100, 100};
constexpr int kRow = 0, kColumn = 1, kAuto = 5;

/// Counts the calls on its nodes, and acts at some of them.
struct Stage : Scene {
    explicit Stage(std::initializer_list<float> inLeaves = {10, 10}) {
        for (float const size : inLeaves) {
            Add(kLeaf, {}, size);
        }
        onCall = [this](Call const& inCall) {
            ++counts[{inCall.node, inCall.name}];
            x[inCall.node] = inCall.name.back() == '?' ? x[inCall.node] : inCall.rect.origin[0];
            if (Action const action = std::exchange(once[{inCall.node, inCall.name}], nullptr)) {
                action();
            }
        };
    }
    int Add(int inKind, std::vector<int> inChildren, float inSize = 10) {
        Looks of{inKind, false, std::move(inChildren)};
        of.best = of.min = {inSize, inSize};
        of.isExpandable = {true, false};
        of.separatorEvery = 1;
        return Scene::Add(of);
    }
    int Arranged(int inId) { return counts[{inId, "ArrangeContent"}]; }

    std::map<std::pair<int, std::string_view>, int> counts;
    std::map<std::pair<int, std::string_view>, Action> once;
    std::map<int, float> x; ///< of the last call
};

TEST(LayoutSafety, TreesOfAnyDepthAndRingsOfParentsAreArranged) {
    for (int const depth : {1000, 100'000}) {
        Stage stage({10});
        int top = 0;
        while (top < depth) {
            top = stage.Add(kAuto, {top});
        }
        stage.Node(top)->Arrange(kPage);
        stage.Of(0).best = stage.Of(0).min = {20, 20};
        stage.Node(0)->Invalidate();
        EXPECT_EQ(stage.Arranged(0), depth == 1000 ? 2 : 0);
        EXPECT_EQ(stage.Node(top)->BestSize().x, depth == 1000 ? 20 : 0);
        EXPECT_EQ(stage.Node(top)->LimitsReached(), depth == 1000 ? 0U : kLayoutLimit_Depth);
    }
    Stage stage({10});
    IArrangeable& lower = *stage.Node(stage.Add(kRow, {0, 2, 1}));
    IArrangeable& upper = *stage.Node(stage.Add(kRow, {1, 0}));
    upper.Arrange(kPage);
    EXPECT_EQ(stage.Arranged(0), 2);
    upper.SetParent(&lower);
    lower.SetParent(&upper);
    upper.InvalidateAll();
    EXPECT_GT(upper.Arrange(kPage).x, 0);

    // Each time that one of them is measured it contains the other one's last layout twice.
    stage.Of(1).children = {0, 2, 2};
    stage.Of(2).children = {1, 1};
    for (int count = 0; count < 64; ++count) {
        IArrangeable& node = count % 2 == 0 ? lower : upper;
        node.SetParent(nullptr);
        node.EnableArrangement(false);
        node.Invalidate();
        EXPECT_LE(node.Arrangements()[0]->Count(), std::uint64_t{1} << 23);
    }
    EXPECT_EQ(upper.LimitsReached() | lower.LimitsReached(), kLayoutLimit_Count);
}

TEST(LayoutSafety, SizesThatAreNotFiniteAreArranged) {
    using Limits = std::numeric_limits<float>;
    // With the last size, rounding leaves a rest that no distribution removes.
    for (float const odd : {Limits::quiet_NaN(), Limits::infinity(), Limits::max(), -7.0F, 1e9F}) {
        Stage stage({odd, 1e8F / 3, odd, 5, odd});
        int const row = stage.Add(kRow, {0, 1});
        int const layout = stage.Add(kAuto, {2, 3, 4, row});
        IArrangeable& root = *stage.Node(stage.Add(kAuto, {layout, layout, row}));
        for (float const width : {1.0F, 1e9F, Limits::max(), Limits::infinity()}) {
            root.Arrange({0, 0, width, 100});
        }
        EXPECT_GE(stage.Arranged(0), 4);
        for (int leaf = 0; leaf < 5; ++leaf) {
            EXPECT_EQ((stage.counts[{leaf, "NaN"}]), 0) << "a leaf was offered NaN";
        }
        EXPECT_LE(root.Arrangements().Size(), 1024U) << odd;
    }
}

TEST(LayoutSafety, AChangedTypeIsArrangedWhereItStands) {
    for (int moment = 0; moment < 4; ++moment) {
        Stage stage({10, 10, 10});
        int const changing = stage.Add(kRow, {0, 1});
        stage.Of(changing).isDynamic = true;
        stage.Renew(changing);
        IArrangeable& root = *stage.Node(stage.Add(kColumn, {2, changing}));
        root.Arrange(kPage);
        ASSERT_EQ(stage.x[1], 50);
        DynamicGroup& group = *stage.Dynamic(changing);
        auto const change = [&] { group.SetArrangementType(kGroupArrangementType_Column); };
        // While measuring or arranging a leaf of the group, or one in front of it.
        int const leaf = moment % 2 == 0 ? 2 : 0;
        stage.once[{leaf, moment < 2 ? "BestWidth?" : "ArrangeContent"}] = change;
        moment < 2 ? stage.Node(leaf)->Invalidate() : group.InvalidateAll();
        root.Rearrange();
        EXPECT_EQ(stage.x[1], 0) << moment;
        EXPECT_EQ(group.Group()->Parent(), &root) << moment;
    }
}

TEST(LayoutSafety, AGroupMayBeReplacedFromWithinAnyOfItsOperations) {
    for (std::string_view const operation :
         {"HorizontalSpacing?", "HorizontalAlignment?", "LeftMargin?", "BuildSeparator?",
          "Position", "SetDimensions"}) {
        for (bool const isMeasured : {true, false}) {
            SCOPED_TRACE(std::string(operation) + (isMeasured ? ", measured" : ", arranged"));
            Stage stage({10, 10});
            int const changing = stage.Add(kRow, {0, 1});
            stage.Of(changing).isDynamic = true;
            stage.Renew(changing);
            IArrangeable& root = *stage.Node(stage.Add(kColumn, {stage.Add(kRow, {changing})}));
            root.Arrange(kPage);
            DynamicGroup& group = *stage.Dynamic(changing);
            stage.once[{changing, operation}] = [&] {
                group.SetArrangementType(kGroupArrangementType_Column);
            };
            isMeasured ? group.Invalidate() : root.Rearrange();
            root.Invalidate();
            root.Rearrange();
            EXPECT_EQ(group.Group()->Parent()->Parent(), &root);
        }
    }
}

TEST(LayoutSafety, NodesMayBeDestroyedInAnyOrder) {
    int const last = 2, inner = 3, root = 4;
    for (int const gone : {0, inner, root}) {
        Stage stage({10, 10, 10});
        stage.Add(kRow, {0, 1});
        stage.Node(stage.Add(kRow, {inner, last}))->Arrange(kPage);
        stage.At(gone).reset();
        IArrangeable& left = *stage.Node(gone == root ? inner : root);
        left.Arrange(kPage);
        EXPECT_EQ(left.Parent(), nullptr);
        EXPECT_GT(stage.x[gone == root ? 1 : last], 0) << "a destroyed leaf keeps its place";
        stage.Node(1)->Invalidate();
        stage.Node(last)->Invalidate();
        EXPECT_EQ(stage.x[gone == inner ? last : 1], gone == root ? 50 : 0);
    }
}

TEST(LayoutSafety, ExceptionsAndPassesLeaveTheTreeUsable) {
    Stage stage;
    IArrangeable& root = *stage.Node(stage.Add(kRow, {0, 1}));
    for (std::pair<int, std::string_view> const call :
         {std::pair(2, "BuildSeparator?"), std::pair(0, "ArrangeContent"),
          std::pair(1, "BestWidth?"), std::pair(0, "ExpandedWidth?")}) {
        stage.once[call] = [] { throw std::runtime_error("not now"); };
        EXPECT_THROW((stage.Node(1)->Invalidate(), root.Arrange(kPage)), std::runtime_error);
        stage.counts.clear();
        root.Arrange(kPage);
        EXPECT_EQ((stage.counts[{2, "Place"}]), 1);
        EXPECT_EQ(stage.x[1], 50);
    }
    stage.counts.clear();
    Action const spoil = [&] {
        stage.once[{0, "ArrangeContent"}] = spoil;
        root.EnableArrangement(false);
        stage.Node(0)->Invalidate();
    };
    spoil();
    root.EnableArrangement(true);
    EXPECT_EQ(stage.Arranged(0), 5);
    EXPECT_EQ(root.LimitsReached(), kLayoutLimit_Passes);
    stage.counts.clear();
    root.InvalidateAll();
    root.Arrangements();
    EXPECT_EQ((stage.counts[{1, "BestWidth?"}]), 0) << "switched off";
    stage.once.clear();
    root.EnableArrangement(true);
    EXPECT_EQ(root.LimitsReached(), 0U);
}

TEST(LayoutSafety, ALeafThatIsMarkedWhileItIsArrangedEndsWithItsNewSize) {
    Stage stage({50, 50});
    int const flow = stage.Add(kColumn, {0, stage.Add(kRow, {1})});
    // The height that it needs follows from the width that it is given, as that of wrapped text.
    stage.once[{0, "ArrangeContent"}] = [&] {
        stage.Of(0).best[1] = stage.Of(0).min[1] = 25;
        stage.Node(0)->MarkInvalid();
    };
    float below = 0;
    stage.onCall = [&, count = stage.onCall](Call const& inCall) {
        below = inCall.node == 1 && inCall.name == "ArrangeContent" ? inCall.rect.origin[1] : below;
        count(inCall);
    };
    stage.Node(flow)->Arrange({0, 0, 200, 300});
    EXPECT_EQ(below, 25);
    EXPECT_EQ(stage.Arranged(0), 2);
}

TEST(LayoutSafety, SeparatorsChangeWithTheNumberOfChildren) {
    Stage stage({10, 10, 10, 10});
    int const id = stage.Add(kRow, {0, 1, 2});
    IArrangeable& root = *stage.Node(id);
    int const& built = stage.counts[{id, "BuildSeparator?"}];
    root.Arrange(kPage);
    root.Invalidate();
    EXPECT_EQ(built, 2);
    // Adding a child from within frees the separators of the layout that is being arranged.
    stage.once[{0, "ArrangeContent"}] = [&] {
        stage.Of(id).children = {0, 1, 2, 3};
        root.Invalidate();
    };
    stage.counts[{id, "Place"}] = 0;
    root.Rearrange();
    EXPECT_EQ(built, 5);
    EXPECT_EQ((stage.counts[{id, "Place"}]), 3);
    // An exception from within the rebuild must not leave freed ones in use either.
    stage.Of(id).children = {0, 1, 2};
    stage.once[{id, "BuildSeparator?"}] = [] { throw std::runtime_error("not now"); };
    EXPECT_THROW(root.Invalidate(), std::runtime_error);
    stage.Of(id).children = {0, 1, 2, 3};
    root.Invalidate();
    EXPECT_EQ(built, 9);
}

TEST(LayoutSafety, CopiesAreMeasuredAndArranged) {
    Stage stage({100});
    int const leaf = 0;
    IArrangeable& root = *stage.Node(stage.Add(kRow, {leaf}));
    EXPECT_EQ(stage.Node(leaf)->BestSize().x, 100);
    Leaf copy(dynamic_cast<Leaf&>(*stage.At(leaf)));
    stage.At(leaf).reset();
    copy.Arrange(kPage);
    EXPECT_EQ(stage.Arranged(leaf), 1);
    stage.Renew(leaf);
    root.Arrange(kPage);
    EXPECT_EQ(stage.x[leaf], 0);
    stage.Of(leaf).best = stage.Of(leaf).min = {20, 20};
    dynamic_cast<Single&>(*stage.At(leaf)) = copy;
    EXPECT_EQ(root.BestSize().x, 20);
}

} // namespace
} // namespace brindle::arrange::tests
