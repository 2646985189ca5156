#include <brindle/arrange/Box.h>
#include <brindle/arrange/ExplainLayout.h>
#include <brindle/arrange/FunctionLeaf.h>
#include <brindle/arrange/PixelRect.h>
#include <brindle/arrange/TreeSizes.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
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
    row.Insert(2, a); // moves it in front of the last one
    EXPECT_EQ(PlacesOf({&c, &a, &b}), (Places{{0, 0, 30, 10}, {35, 0, 10, 20}, {50, 0, 50, 20}}));

    EXPECT_TRUE(row.SetShown(b, false));
    EXPECT_EQ(PlacesOf({&c, &a}), (Places{{0, 0, 30, 10}, {35, 0, 10, 20}}));
    EXPECT_EQ(MinimumSize(row), (PointT<float>{45, 20}));
    EXPECT_FALSE(row.IsShown(b));
    b.SetSizes({20, 20}); // heard again when it is shown
    row.SetShown(b, true);
    EXPECT_EQ(PlacesOf({&a, &b}), (Places{{35, 0, 10, 20}, {50, 0, 20, 20}}));

    EXPECT_TRUE(row.Remove(c));
    EXPECT_FALSE(row.Remove(c));
    EXPECT_EQ(c.Parent(), nullptr);
    EXPECT_EQ(PlacesOf({&a, &b}), (Places{{0, 0, 10, 20}, {15, 0, 20, 20}}));
    row.Clear();
    EXPECT_EQ(row.Size(), 0u);
    EXPECT_EQ(row.Arrange({0, 0, 9, 9}), PointT<float>{});
}

TEST(Box, OwnsWhatItMadeAndMayBeDestroyedBeforeOrAfterItsChildren) {
    // Each leaf holds one use of it.
    auto const uses = std::make_shared<int>();
    auto const makeLeaf = [&] {
        return std::make_unique<FunctionLeaf>(LeafSizes{10, 10}, [uses](auto const&) {});
    };
    auto outer = std::make_unique<Box<Column>>(2.0F);
    auto pointedTo = makeLeaf();
    auto& inner = outer->Emplace<Box<AutoLayout>>();
    inner.Add(makeLeaf());
    FunctionLeaf const& toRemove = *inner.Add(makeLeaf());
    outer->Add(*pointedTo);
    EXPECT_EQ(outer->Add(std::unique_ptr<FunctionLeaf>()), nullptr);
    outer->Arrange({0, 0, 50, 50});
    EXPECT_TRUE(inner.Remove(toRemove));
    EXPECT_EQ(uses.use_count(), 3);
    pointedTo.reset();
    outer->Rearrange(); // with an empty place
    EXPECT_EQ(outer->Size(), 1u);
    outer->Invalidate();
    EXPECT_EQ(MinimumSize(*outer), (PointT<float>{10, 10}));

    pointedTo = makeLeaf();
    outer->Add(*pointedTo);
    outer.reset();
    EXPECT_EQ(uses.use_count(), 2);
    EXPECT_EQ(pointedTo->Parent(), nullptr);
}

TEST(Box, MayBeChangedWhileItIsArranged) {
    auto const uses = std::make_shared<int>();
    int placings = 0;
    Box<Row> row(3);
    FunctionLeaf last({10, 10});
    FunctionLeaf* removed = nullptr;
    auto& changer = row.Emplace<FunctionLeaf>(LeafSizes{10, 10}, [&](auto const&) {
        if (++placings == 1) {
            row.Remove(*removed);
            EXPECT_EQ(uses.use_count(), 2) << "it is still in use";
            row.Add(last);
        }
    });
    removed = &row.Emplace<FunctionLeaf>(LeafSizes{10, 10}, [uses](auto const&) {
        ADD_FAILURE() << "it is placed after it was removed";
    });
    row.Arrange({0, 0, 100, 100});
    EXPECT_EQ(uses.use_count(), 1);
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
    panel.SetShown(a, false); // 10 of 50 are cut off, 20 high
    EXPECT_EQ(ExplainedAlternatives(panel, {70, 23}).front().clippedArea, 200);
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
    std::vector<float> widths{40, 10};
    FunctionLeaf leaf([&] {
        float const width = widths.back();
        widths.pop_back();
        return LeafSizes{width, 10};
    });
    Box<Row> row({&leaf});
    row.Emplace<Spacer>(1.0F, 0.0F);
    auto const& end = row.Emplace<FunctionLeaf>(LeafSizes{10, 10});
    row.Arrange({0, 0, 100, 10});
    row.Rearrange();
    leaf.Invalidate();
    EXPECT_EQ(PlacesOf({&leaf, &end}), (Places{{0, 0, 40, 10}, {90, 0, 10, 10}}));
}

TEST(PixelRect, RoundsTheEdges) {
    using Pixels = RectT<std::int32_t>;
    EXPECT_EQ(PixelRect({0.4F, -0.5F, 10.2F, 3}), (Pixels{0, 0, 11, 3}));
    EXPECT_EQ(PixelRect({10.6F, -2.6F, 1e30F, NAN}), (Pixels{11, -3, 999'999'989, 3}));
}

/// The explanation has its own form of the rules: it has to name the alternative that is arranged.
TEST(ExplainLayout, TheChosenOneIsTheOneThatIsArranged) {
    std::mt19937 random(14);
    auto const length = [&](unsigned inMost) { return static_cast<float>(random() % inMost); };
    for (int round = 0; round < 300; ++round) {
        Places placed;
        Box<AutoLayout> root(length(4));
        for (int group = 0; group < 3; ++group) {
            auto& inner = root.Emplace<Box<Flipping>>(length(4));
            inner.SetInset(length(3));
            for (int leaf = 0; leaf < 2; ++leaf) {
                LeafSizes const sizes{{5, 5 + length(9), 60, random() % 3 == 0}, 5 + length(9)};
                inner.Emplace<FunctionLeaf>(sizes,
                                            [&](auto const& inRect) { placed.push_back(inRect); });
            }
        }
        RectT<float> const rect{0, 0, 1 + length(60), 1 + length(60)};
        auto const explained = ExplainedAlternatives(root, {rect.width, rect.height});
        EXPECT_TRUE(placed.empty());
        root.Arrange(rect);
        Places const arranged = std::exchange(placed, {});
        for (std::size_t index = 0; index < explained.size(); ++index) {
            if (explained[index].isChosen) {
                root.Arrangements()[index]->Arrange(rect);
            }
        }
        EXPECT_EQ(placed, arranged) << ExplainLayout(root, {rect.width, rect.height});
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
