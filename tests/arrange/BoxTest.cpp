#include "tests/arrange/Scene.h"

#include <brindle/arrange/Box.h>
#include <brindle/arrange/ExplainLayout.h>
#include <brindle/arrange/FunctionLeaf.h>
#include <brindle/arrange/TreeSizes.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace brindle::arrange {

namespace {

using geom::PointT;
using geom::RectT;
using Places = std::vector<RectT<float>>;

Places PlacesOf(std::initializer_list<FunctionLeaf const*> inLeaves) {
    Places places;
    for (FunctionLeaf const* const leaf : inLeaves) {
        places.push_back(leaf->Place().value_or(RectT<float>{-1, -1, -1, -1}));
    }
    return places;
}

TEST(Box, ChangesOfTheListRearrangeTheTree) {
    FunctionLeaf a({10, 20}), b({Growing(10, 50), 20}), c({30, 10});
    Box<Row> row({&a, nullptr, &b}, 5);
    row.Arrange({0, 0, 100, 20});
    EXPECT_EQ(PlacesOf({&a, &b}), (Places{{0, 0, 10, 20}, {15, 0, 50, 20}}));

    row.Insert(1, c);
    EXPECT_EQ(PlacesOf({&a, &c, &b}), (Places{{0, 0, 10, 20}, {15, 0, 30, 10}, {50, 0, 50, 20}}));
    row.Insert(3, a); // moves it to the end
    EXPECT_EQ(PlacesOf({&c, &b, &a}), (Places{{0, 0, 30, 10}, {35, 0, 50, 20}, {90, 0, 10, 20}}));

    EXPECT_TRUE(row.SetShown(b, false));
    EXPECT_EQ(PlacesOf({&c, &a}), (Places{{0, 0, 30, 10}, {35, 0, 10, 20}}));
    EXPECT_EQ(MinimumSize(row), (PointT<float>{45, 20}));
    EXPECT_FALSE(row.IsShown(b));
    b.SetSizes({20, 20}); // heard again when it is shown
    row.SetShown(b, true);
    EXPECT_EQ(PlacesOf({&b, &a}), (Places{{35, 0, 20, 20}, {60, 0, 10, 20}}));

    EXPECT_TRUE(row.Remove(c));
    EXPECT_FALSE(row.Remove(c));
    EXPECT_EQ(c.Parent(), nullptr);
    EXPECT_EQ(PlacesOf({&b, &a}), (Places{{0, 0, 20, 20}, {25, 0, 10, 20}}));
    row.Clear();
    EXPECT_EQ(row.Size(), 0u);
    EXPECT_EQ(row.Arrange({0, 0, 9, 9}), PointT<float>{});
}

/// Counts the leaves that exist.
struct Counted : Single {
    explicit Counted(int& ioCount) : count(ioCount) { ++count; }
    ~Counted() override { --count; }
    float BestWidth() const override { return 10; }
    float BestHeight() const override { return 10; }
    PointT<float> ArrangeContent(RectT<float> const& inRect) override {
        return {inRect.width, inRect.height};
    }
    int& count;
};

TEST(Box, OwnsWhatItMadeAndMayBeDestroyedBeforeOrAfterItsChildren) {
    int count = 0;
    auto outer = std::make_unique<Box<Column>>(2.0F);
    auto pointedTo = std::make_unique<Counted>(count);
    auto inner = std::make_unique<Box<AutoLayout>>();
    inner->Emplace<Counted>(count);
    auto& toRemove = inner->Emplace<Counted>(count);
    outer->Add(*pointedTo);
    Box<AutoLayout>* const owned = outer->Add(std::move(inner));
    EXPECT_EQ(outer->Add(std::unique_ptr<Counted>()), nullptr);
    outer->Arrange({0, 0, 50, 50});
    EXPECT_EQ(owned->Parent(), outer.get());
    EXPECT_TRUE(owned->Remove(toRemove));
    EXPECT_EQ(count, 2);
    pointedTo.reset();
    outer->Rearrange(); // with an empty place
    EXPECT_EQ(outer->Size(), 1u);
    outer->Invalidate();
    EXPECT_EQ(MinimumSize(*outer), (PointT<float>{10, 10}));

    pointedTo = std::make_unique<Counted>(count);
    outer->Add(*pointedTo);
    outer.reset();
    EXPECT_EQ(count, 1);
    EXPECT_EQ(pointedTo->Parent(), nullptr);
    pointedTo->Invalidate();
}

TEST(Box, MayBeChangedWhileItIsArranged) {
    int count = 0;
    int placings = 0;
    Box<Row> row(3);
    auto* removed = &row.Emplace<Counted>(count);
    FunctionLeaf last({10, 10});
    auto& changer = row.Emplace<FunctionLeaf>(LeafSizes{10, 10}, [&](auto const&) {
        if (++placings == 1) {
            row.Remove(*removed);
            EXPECT_EQ(count, 1) << "it is still in use";
            row.Add(last);
        }
    });
    row.Arrange({0, 0, 100, 100});
    EXPECT_EQ(count, 0);
    EXPECT_EQ(placings, 2);
    EXPECT_EQ(PlacesOf({&changer, &last}), (Places{{0, 0, 10, 10}, {13, 0, 10, 10}}));
    EXPECT_THROW(row.SetPlace([](auto const&) { throw std::runtime_error("no window"); }),
                 std::runtime_error);
    row.SetPlace({});
    changer.SetSizes({20, 10}); // arranges at once: the pass has ended
    EXPECT_EQ(last.Place()->x, 23);
}

TEST(Box, TheInsetCountsAtAnyDepthAndInEveryKind) {
    FunctionLeaf a({50, 20}, {}, 1), b({50, 20}), after({5, 5});
    RectT<float> background;
    Box<HorizontalWrapping> panel({&a, &b});
    panel.SetInset({10, 1, 20, 2});
    panel.SetPlace([&](RectT<float> const& inRect) { background = inRect; });
    Box<Row> row({&panel, &after});
    EXPECT_EQ(MinimumSize(panel), (PointT<float>{82, 25}));
    EXPECT_EQ(SizeForWidth(panel, 131), (PointT<float>{82, 45}));
    EXPECT_EQ(SizeForWidth(panel, 132), (PointT<float>{132, 25}));
    EXPECT_EQ(SizeForWidth(panel, 10), (PointT<float>{82, 45}));
    row.Arrange({0, 0, 200, 25});
    EXPECT_EQ(PlacesOf({&a, &b, &after}),
              (Places{{11, 2, 50, 20}, {62, 1, 50, 20}, {132, 0, 5, 5}}));
    EXPECT_EQ(background, (RectT<float>{0, 0, 132, 25}));
}

TEST(Box, SeparatorsFollowWhatIsShown) {
    FunctionLeaf a({10, 20}), b({10, 20}), c({10, 30});
    Box<Flipping> box({&a, &b, &c}, 4);
    std::vector<std::string> calls;
    box.Arrange({0, 0, 38, 30});
    box.SetSeparator([&](std::size_t inNumber, SeparatorOrientation inWay, auto const& inRect) {
        calls.push_back(std::to_string(inNumber) + (inWay == 0 ? '|' : '-') +
                        std::to_string(static_cast<int>(inWay == 0 ? inRect.x : inRect.y)));
    });
    EXPECT_EQ(calls, (std::vector<std::string>{"0|10", "1|24"}));
    calls.clear();
    box.SetShown(b, false);
    EXPECT_EQ(calls, (std::vector<std::string>{"0|10"}));
    calls.clear();
    box.Arrange({0, 0, 10, 54});
    EXPECT_EQ(calls, (std::vector<std::string>{"0-20"}));
    calls.clear();
    box.SetSeparator({});
    box.Rearrange();
    EXPECT_EQ(calls, (std::vector<std::string>{}));
}

TEST(FunctionLeaf, TheHeightFollowsTheWidth) {
    auto const linesOfText = [](float inWidth) { return 1000 / inWidth; };
    FunctionLeaf text({Flexible(20, 100), 0}), below({10, 10});
    text.SetHeightForWidth(linesOfText);
    Box<Column> column({&text, &below});
    EXPECT_EQ(column.BestSize(), (PointT<float>{20, 20}));
    for (float const width : {50.0F, 200.0F}) {
        column.Arrange({0, 0, width, 100});
        EXPECT_EQ(text.Place()->height, 1000 / width);
        EXPECT_EQ(below.Place()->y, 1000 / width);
    }
}

TEST(FunctionLeaf, SizesAreAskedForWhenItIsMeasured) {
    float width = 10;
    int measured = 0;
    FunctionLeaf leaf([&] {
        ++measured;
        return LeafSizes{Growing(width, width), 10};
    });
    FunctionLeaf next({10, 10});
    Box<Row> row({&leaf, &next});
    row.Emplace<Spacer>(1.0F, 0.0F);
    auto const& end = row.Emplace<FunctionLeaf>(LeafSizes{10, 10});
    row.Arrange({0, 0, 100, 10});
    row.Rearrange();
    EXPECT_EQ(measured, 1);
    width = 40;
    leaf.Invalidate();
    EXPECT_EQ(measured, 2);
    EXPECT_EQ(PlacesOf({&leaf, &next, &end}),
              (Places{{0, 0, 40, 10}, {40, 0, 10, 10}, {90, 0, 10, 10}}));
}

/// The explanation has its own form of the rules: it has to name the alternative that is arranged.
TEST(ExplainLayout, TheChosenOneIsTheOneThatIsArranged) {
    std::mt19937 random(14);
    auto const length = [&](unsigned inMost) { return static_cast<float>(random() % inMost); };
    for (int round = 0; round < 300; ++round) {
        Box<AutoLayout> root(length(4));
        for (int group = 0; group < 2; ++group) {
            auto& inner = root.Emplace<Box<Flipping>>(length(4));
            for (int leaf = 0; leaf < 2; ++leaf) {
                inner.Emplace<FunctionLeaf>(
                    LeafSizes{{5, 5 + length(9), 60, random() % 3 == 0}, 5 + length(9)});
            }
            inner.SetInset(length(3));
        }
        PointT<float> const size{1 + length(60), 1 + length(60)};
        impl::ArrangementSet const& set = root.Arrangements();
        auto const explained = ExplainedAlternatives(root, size);
        ASSERT_EQ(explained.size(), set.Size());
        Places arranged;
        auto const record = [&](Places& outPlaces) {
            outPlaces.clear();
            for (std::size_t group = 0; group < 2; ++group) {
                auto& inner = dynamic_cast<AbstractBox&>(*root.Child(group));
                for (std::size_t leaf = 0; leaf < 2; ++leaf) {
                    outPlaces.push_back(*dynamic_cast<FunctionLeaf&>(*inner.Child(leaf)).Place());
                }
            }
        };
        root.Arrange({0, 0, size.x, size.y});
        record(arranged);
        int chosen = 0;
        for (std::size_t index = 0; index < set.Size(); ++index) {
            if (explained[index].isChosen) {
                ++chosen;
                Places ofChosen;
                set[index]->Arrange({0, 0, size.x, size.y});
                record(ofChosen);
                EXPECT_EQ(ofChosen, arranged) << ExplainLayout(root, size);
            }
        }
        EXPECT_EQ(chosen, 1);
    }
}

TEST(ExplainLayout, SaysHowEachStandsAndWhyItLost) {
    FunctionLeaf a({54, 20}), b({54, 20}), c({54, 20});
    Box<HorizontalWrapping> box({&a, &b, &c});
    Box<Column> window({&box});
    window.SetInset(1);
    EXPECT_EQ(
        ExplainLayout(window, {164, 30}),
        "* column of 1 [row of 3]: minimum 164x22, best 164x22, fits: chosen, it is the only "
        "one that fits\n"
        "  column of 1 [rows 1+2]: minimum 110x42, best 110x42, does not fit: the chosen one "
        "fits\n"
        "  column of 1 [column of 3]: minimum 56x62, best 56x62, does not fit: the chosen one "
        "fits\n");
    EXPECT_EQ(ExplainLayout(a, {10, 10}),
              "* leaf: minimum 54x20, best 54x20, does not fit: chosen, it is the only one\n");
    Box<Row> empty;
    EXPECT_EQ(ExplainLayout(empty, {10, 10}), "");
}

} // namespace

} // namespace brindle::arrange
