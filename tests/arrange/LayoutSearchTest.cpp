#include "arrange/src/search/LayoutSearch.h"
#include "arrange/src/search/ExhaustiveSearch.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace brindle::arrange::impl {
namespace {

using Form = LayoutForm;
using Size = geom::PointT<float>;
using Lengths = std::vector<float>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

/// By kind of group.
std::vector<Form> const kForms[] = {
    {Form::kRow},          {Form::kColumn},       {Form::kRow, Form::kColumn},
    {Form::kRowsInColumn}, {Form::kColumnsInRow}, {Form::kRowsInColumn, Form::kColumnsInRow}};

LayoutProblem AnyProblem(std::mt19937& ioRandom, Lengths const& inExtents, Lengths const& inSpaces,
                         std::size_t inKind, std::size_t inChildren, std::size_t inAlternatives) {
    auto const any = [&](Lengths const& inList) {
        return Size{inList[ioRandom() % inList.size()], inList[ioRandom() % inList.size()]};
    };
    LayoutProblem problem{{}, any(inSpaces), any(inSpaces), kForms[inKind]};
    while (problem.children.size() < inChildren) {
        auto& sizes = problem.children.emplace_back(1 + ioRandom() % inAlternatives);
        std::generate(sizes.begin(), sizes.end(), [&] { return any(inExtents); });
    }
    return problem;
}

TEST(LayoutSearch, KeepsWhatTryingEveryLayoutKeeps) {
    std::pair<Lengths, Lengths> const palettes[] = {
        {{0, 1, 2, 3}, {0, 1}},
        {{0, 0.25F, 1, 7.75F, 30, 61.5F, 99.5F}, {0, 1.75F, 12}},
        {{-9, -2, 0, 5, 6, 11}, {-4, 0, -13, 2}}};
    std::mt19937 random(5);
    for (auto const& [extents, spaces] : palettes) {
        for (std::size_t round = 0; round < 700; ++round) {
            std::size_t const most = 1 + random() % 4; // alternatives
            std::size_t const children = 1 + random() % (most == 1 ? 10 : 7 - most);
            auto const problem = AnyProblem(random, extents, spaces, round % 6, children, most);
            auto const kept = TryAllLayouts(problem);
            auto const found = FindLayouts(problem).layouts;
            auto const isSame = [](FoundLayout const& a, FoundLayout const& b) {
                return std::tie(a.alternatives, a.form, a.lines) ==
                       std::tie(b.alternatives, b.form, b.lines);
            };
            ASSERT_TRUE(std::equal(found.begin(), found.end(), kept.begin(), kept.end(), isSame))
                << "extents to " << extents.back() << ", round " << round;
        }
    }
}

/// Of a layout in rows.
Size SizeOf(LayoutProblem const& inProblem, FoundLayout const& inLayout) {
    auto const [spacing, margins] = std::pair(inProblem.spacing, inProblem.margins);
    Size size{0, margins.y - spacing.y};
    std::size_t child = 0;
    for (std::uint32_t const count : inLayout.lines) {
        Size row{margins.x - spacing.x, 0};
        for (std::size_t const end = child + count; child < end; ++child) {
            Size const one = inProblem.children[child][inLayout.alternatives[child]];
            row = {row.x + spacing.x + one.x, std::max(row.y, one.y)};
        }
        size = {std::max(size.x, row.x), size.y + spacing.y + row.y};
    }
    return size;
}

/// The least height of the children in rows of these heights that are no wider.
float LeastHeight(LayoutProblem const& inProblem, float inWidth, Lengths const& inHeights) {
    Lengths least{inProblem.margins.y - inProblem.spacing.y}; // by number of children
    while (least.size() <= inProblem.children.size()) {
        float height = kInfinity;
        for (float const row : inHeights) {
            float width = inProblem.margins.x - inProblem.spacing.x;
            for (std::size_t first = least.size(); first-- > 0 && width <= inWidth;) {
                float narrowest = kInfinity;
                for (Size const& size : inProblem.children[first]) {
                    narrowest = size.y <= row ? std::min(narrowest, size.x) : narrowest;
                }
                width += inProblem.spacing.x + narrowest;
                float const sum = least[first] + inProblem.spacing.y + row;
                height = width <= inWidth ? std::min(height, sum) : height;
            }
        }
        least.push_back(height);
    }
    return least.back();
}

TEST(LayoutSearch, FindsTheLowestLayoutOfManyChildrenForEveryWidth) {
    std::mt19937 random(11);
    for (float const step : {1.0F, 1.0F / 3}) {
        Lengths extents{0};
        while (extents.size() < 60) {
            extents.push_back(step * static_cast<float>(extents.size()));
        }
        for (std::size_t const alternatives : {1U, 5U}) {
            auto const problem = AnyProblem(random, extents, {0, 3, 8}, 3, 40, alternatives);
            auto const layouts = FindLayouts(problem).layouts;
            ASSERT_GT(layouts.size(), 20U);
            for (int round = 0; round < 60; ++round) {
                float const width = step * (static_cast<float>(84 + random() % 1000) + 0.5F);
                float lowest = kInfinity;
                for (FoundLayout const& layout : layouts) {
                    Size const size = SizeOf(problem, layout);
                    lowest = size.x <= width ? std::min(lowest, size.y) : lowest;
                }
                EXPECT_NEAR(lowest, LeastHeight(problem, width, extents), 1e-3) << width;
            }
        }
    }
}

TEST(LayoutSearch, KeepsSizesThatDoNotCompare) {
    // A row is as high as the highest of its children, 0 if that is NaN.
    LayoutProblem const problem{
        {{{kNan, 1}, {kInfinity, 2}, {2, 2}, {kNan, 1}, {-kInfinity, 3}, {1, kNan}}},
        {},
        {},
        kForms[0]};
    std::vector<std::uint32_t> kept;
    for (FoundLayout const& layout : FindLayouts(problem).layouts) {
        kept.push_back(layout.alternatives[0]);
    }
    EXPECT_EQ(kept, (std::vector<std::uint32_t>{0, 3, 4, 5}));
}

TEST(LayoutSearch, StaysSmallWhereSizesSayNothing) {
    for (float const extent : {kNan, kInfinity, 3e38F, 1.0F}) {
        std::size_t const count = extent == 1 ? 3000 : 37; // or there are too many lines
        LayoutProblem problem{
            std::vector(count, std::vector<Size>(9, {extent, -extent})), {}, {}, kForms[5]};
        auto const [layouts, areComplete] = FindLayouts(problem);
        EXPECT_FALSE(areComplete);
        ASSERT_EQ(layouts.size(), count == 37 ? 14U : 26U);
        for (FoundLayout const& layout : layouts) {
            EXPECT_EQ(std::accumulate(layout.lines.begin(), layout.lines.end(), 0U), count);
        }
        problem.children.back().clear();
        EXPECT_TRUE(FindLayouts(problem).layouts.empty());
    }
}

} // namespace
} // namespace brindle::arrange::impl
