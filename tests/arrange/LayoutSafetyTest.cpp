#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/Groups.h>
#include <brindle/arrange/Single.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace brindle::arrange {

namespace {

using Action = std::function<void()>;
constexpr geom::RectT<float> kPage{0, 0, 100, 100};

void DoOnce(Action& ioAction) {
    if (Action const action = std::exchange(ioAction, nullptr)) {
        action();
    }
}

struct Leaf : Single {
    explicit Leaf(float inBest = 10) : best(inBest), least(inBest) {}
    float BestWidth() const override {
        ++asked;
        DoOnce(whenAsked);
        return best;
    }
    float BestHeight() const override { return best; }
    float MinWidth() const override { return least; }
    bool HorizontallyExpandable() const override { return true; }
    float ExpandedWidth(float inAvailable) const override {
        DoOnce(whenOffered);
        return inAvailable;
    }
    geom::PointT<float> ArrangeContent(geom::RectT<float> const& inRect) override {
        ++arranged;
        x = inRect.x;
        DoOnce(whenArranged);
        return {inRect.width, inRect.height};
    }
    float best;
    float least;
    float x = -1;
    int arranged = 0;
    mutable int asked = 0;
    mutable Action whenAsked;
    mutable Action whenOffered;
    Action whenArranged;
};

struct Separator final : ISeparator {
    explicit Separator(int& ioPlaced) : placed(&ioPlaced) {}
    void Place(SeparatorOrientation, geom::RectT<float> const&) override { ++*placed; }
    int* placed;
};

template <typename Kind>
struct Box : Kind {
    using Nodes = std::vector<std::function<IArrangeable*()>>;
    template <typename... Children>
    explicit Box(Children*... inChildren) : nodes{[inChildren] { return inChildren; }...} {}

    bool VisitChildren(boost::function<bool(IArrangeable const&)>) const override { return true; }
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override {
        for (auto const& node : nodes) {
            inFunction(*node());
        }
        return true;
    }
    ISeparator* BuildSeparator() override {
        DoOnce(whenBuilding);
        ++built;
        return separators.emplace_back(std::make_unique<Separator>(placed)).get();
    }
    void ClearSeparators() override { separators.clear(); }

    Nodes nodes;
    std::vector<std::unique_ptr<Separator>> separators;
    Action whenBuilding;
    int built = 0;
    int placed = 0;
};

TEST(LayoutSafety, AnyDepthAndAnyRingEnds) {
    for (std::size_t const depth : {1000U, 100'000U}) {
        Leaf leaf;
        std::vector<std::unique_ptr<Box<AutoLayout>>> groups;
        IArrangeable* top = &leaf;
        while (groups.size() < depth) {
            groups.push_back(std::make_unique<Box<AutoLayout>>(top));
            top = groups.back().get();
        }
        top->Arrange(kPage);
        leaf.best = leaf.least = 20;
        leaf.Invalidate();
        EXPECT_EQ(leaf.arranged, depth == 1000 ? 2 : 0);
        EXPECT_EQ(top->BestSize().x, depth == 1000 ? 20 : 0);
    }
    Leaf leaf;
    Box<Row> lower(&leaf);
    Box<Row> upper(&lower, &leaf);
    lower.nodes.insert(lower.nodes.end(), {[&] { return &upper; }, [&] { return &lower; }});
    upper.Arrange(kPage);
    EXPECT_EQ(leaf.arranged, 2);
    upper.SetParent(&lower);
    lower.SetParent(&upper);
    upper.InvalidateAll();
    EXPECT_GT(upper.Arrange(kPage).x, 0);

    // Each time that one of them is measured it holds what the other one was before, twice.
    Box<Row> one(&leaf);
    Box<Row> other(&one, &one);
    one.nodes.insert(one.nodes.end(), 2, [&] { return &other; });
    for (int count = 0; count < 64; ++count) {
        IArrangeable& node = count % 2 == 0 ? static_cast<IArrangeable&>(one) : other;
        node.SetParent(nullptr);
        node.EnableArrangement(false);
        node.Invalidate();
        EXPECT_LE(node.Arrangements()[0]->Count(), std::uint64_t{1} << 23);
    }
}

TEST(LayoutSafety, OddSizesEnd) {
    using Limits = std::numeric_limits<float>;
    // Of the last ones rounding leaves a rest that no sharing gets rid of.
    for (float const odd : {Limits::quiet_NaN(), Limits::infinity(), Limits::max(), -7.0F, 1e9F}) {
        Leaf leaves[] = {Leaf(odd), Leaf(1e8F / 3), Leaf(odd), Leaf(5), Leaf(odd)};
        Box<Row> row(&leaves[0], &leaves[1]);
        Box<AutoLayout> layout(&leaves[2], &leaves[3], &leaves[4], &row);
        Box<AutoLayout> root(&layout, &layout, &row);
        for (float const width : {1.0F, 1e9F, Limits::max(), Limits::infinity()}) {
            root.Arrange({0, 0, width, 100});
        }
        EXPECT_GE(leaves[0].arranged, 4);
        EXPECT_LE(root.Arrangements().Size(), 1024U) << odd;
    }
}

TEST(LayoutSafety, AChangedTypeIsArrangedWhereItStands) {
    for (int moment = 0; moment < 6; ++moment) {
        Leaf leaves[3];
        Box<DynamicGroup> changing(&leaves[1], &leaves[2]);
        changing.SetArrangementType(kGroupArrangementType_Row, nullptr);
        Box<Column> root(&leaves[0]);
        root.nodes.push_back([&] { return changing.Group(); });
        root.Arrange(kPage);
        ASSERT_EQ(leaves[2].x, 50);
        auto const change = [&] {
            changing.SetArrangementType(kGroupArrangementType_Column, nullptr);
        };
        if (moment < 2) {
            root.EnableArrangement(moment == 0);
            change();
            root.EnableArrangement(true);
        } else {
            // Measuring or arranging what stands in the group, or before it.
            Leaf& leaf = leaves[moment % 2];
            (moment < 4 ? leaf.whenAsked : leaf.whenArranged) = change;
            moment < 4 ? leaf.Invalidate() : changing.InvalidateAll();
        }
        root.Rearrange();
        EXPECT_EQ(leaves[2].x, 0) << moment;
        EXPECT_EQ(changing.Group()->Parent(), &root) << moment;
    }
}

TEST(LayoutSafety, NodesGoInAnyOrder) {
    for (int gone = 0; gone < 3; ++gone) {
        auto leaf = std::make_unique<Leaf>();
        Leaf second;
        Leaf last;
        auto inner = std::make_unique<Box<Row>>(leaf.get(), &second);
        auto root = std::make_unique<Box<Row>>(inner.get(), &last);
        root->Arrange(kPage);
        if (gone == 0) {
            inner->nodes.erase(inner->nodes.begin());
            leaf.reset();
        } else if (gone == 1) {
            root->nodes.erase(root->nodes.begin());
            inner.reset();
        } else {
            root.reset();
        }
        IArrangeable& left = root != nullptr ? static_cast<IArrangeable&>(*root) : *inner;
        left.Arrange(kPage);
        EXPECT_EQ(left.Parent(), nullptr);
        EXPECT_GT((gone == 2 ? second : last).x, 0) << "the place of what is gone stays";
        second.Invalidate();
        last.Invalidate();
        EXPECT_EQ((gone == 1 ? last : second).x, gone == 2 ? 50 : 0);
    }
}

TEST(LayoutSafety, ExceptionsAndPassesLeaveTheTreeUsable) {
    Leaf leaves[2];
    Box<Row> root(&leaves[0], &leaves[1]);
    for (Action* const operation : {&root.whenBuilding, &leaves[0].whenArranged,
                                    &leaves[1].whenAsked, &leaves[0].whenOffered}) {
        *operation = [] { throw std::runtime_error("not now"); };
        EXPECT_THROW((leaves[1].Invalidate(), root.Arrange(kPage)), std::runtime_error);
        root.placed = 0;
        root.Arrange(kPage);
        EXPECT_EQ(root.placed, 1);
        EXPECT_EQ(leaves[1].x, 50);
    }
    leaves[0].arranged = 0;
    Action const spoil = [&] {
        leaves[0].whenArranged = spoil;
        root.EnableArrangement(false);
        leaves[0].Invalidate();
    };
    spoil();
    root.EnableArrangement(true);
    EXPECT_EQ(leaves[0].arranged, 5);
    int const asked = leaves[1].asked;
    root.InvalidateAll();
    root.Arrangements();
    EXPECT_EQ(leaves[1].asked, asked) << "switched off";
}

TEST(LayoutSafety, SeparatorsChangeWithTheNumberOfChildren) {
    Leaf leaves[4];
    Box<Row> root(&leaves[0], &leaves[1], &leaves[2]);
    root.Arrange(kPage);
    root.Invalidate();
    EXPECT_EQ(root.built, 2);
    // Adding a child in the middle frees the separators of the layout that is still under way.
    leaves[0].whenArranged = [&] {
        root.nodes.push_back([&] { return &leaves[3]; });
        root.Invalidate();
    };
    root.placed = 0;
    root.Rearrange();
    EXPECT_EQ(root.built, 5);
    EXPECT_EQ(root.placed, 3);
    // A refusal in the middle of building leaves none of the freed ones either.
    auto const child = root.nodes.back();
    root.nodes.pop_back();
    root.whenBuilding = [] { throw std::runtime_error("not now"); };
    EXPECT_THROW(root.Invalidate(), std::runtime_error);
    root.nodes.push_back(child);
    root.Invalidate();
    EXPECT_EQ(root.built, 8);
}

TEST(LayoutSafety, WhatIsEmptyOrCopiedIsArranged) {
    Leaf leaf(100);
    leaf.least = 40;
    EXPECT_EQ(leaf.BestSize().x, 40);
    Leaf copy(leaf);
    copy.Arrange(kPage);
    EXPECT_EQ(leaf.arranged + 1, copy.arranged);
    Box<AutoLayout> noChildren;
    Box<Flipping> allEmpty(&noChildren, &noChildren);
    EXPECT_EQ(allEmpty.BestSize().x, 0);
    Box<Row> root(&allEmpty, &leaf);
    root.Arrange(kPage);
    EXPECT_EQ(leaf.x, 0);
    leaf = Leaf(20);
    leaf.Invalidate();
    EXPECT_EQ(root.BestSize().x, 20);
}

} // namespace

} // namespace brindle::arrange
