#include "tests/arrange/LayoutModel.h"

#include "arrange/src/search/LayoutSearch.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace brindle::arrange::impl {
namespace {

using Form = LayoutForm;
using tests::Pair;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

/// By kind of group.
std::vector<Form> const kForms[] = {
    {Form::kRow},          {Form::kColumn},       {Form::kRow, Form::kColumn},
    {Form::kRowsInColumn}, {Form::kColumnsInRow}, {Form::kRowsInColumn, Form::kColumnsInRow}};

using Lengths = std::vector<float>;

/// A random group whose children have alternatives, for the search and for the model. The best
/// width of an alternative, which the search does not use, is its number.
struct Group {
    Group(std::mt19937& ioRandom, Lengths const& inExtents, Lengths const& inSpaces,
          std::size_t inKind, std::size_t inChildren, std::size_t inAlternatives) {
        auto const any = [&](Lengths const& inList) {
            return Pair{inList[ioRandom() % inList.size()], inList[ioRandom() % inList.size()]};
        };
        tests::Looks& root = looks.emplace_back();
        root.kind = static_cast<int>(inKind);
        auto const [sx, sy] = root.spacing = any(inSpaces);
        auto const [mx, my] = root.lead = any(inSpaces);
        problem = {{}, {sx, sy}, {mx, my}, kForms[inKind]};
        for (int id = 1; id <= static_cast<int>(inChildren); ++id) {
            looks.emplace_back();
            root.children.push_back(id);
            model::Node& child = tree.At(id);
            child.isValid = true;
            auto& sizes = problem.children.emplace_back();
            for (std::size_t count = 1 + ioRandom() % inAlternatives; count > 0; --count) {
                auto const [x, y] = looks.back().min = any(inExtents);
                sizes.push_back({x, y});
                looks.back().best[0] = static_cast<float>(sizes.size());
                child.set.push_back(std::make_shared<model::Arrangement>(
                    child, 0, model::Alternatives{}, model::Separators{}, true));
            }
        }
    }

    model::Arrangement Built(FoundLayout const& inLayout) {
        std::size_t const axis = HasRows(inLayout.form) ? 0 : 1;
        model::Alternatives all, lines;
        for (std::size_t i = 0; i < problem.children.size(); ++i) {
            all.push_back(tree.nodes[i + 1].set[inLayout.alternatives[i]]);
        }
        if (!IsWrapping(inLayout.form)) {
            return {tree.At(0), axis, all, {}, true};
        }
        auto end = all.begin();
        for (std::uint32_t const count : inLayout.lines) {
            model::Alternatives const run(end, end + count);
            bool const isOnly = inLayout.lines.size() == 1;
            lines.push_back(count == 1 ? *end
                                       : std::make_shared<model::Arrangement>(
                                             tree.At(0), axis, run, model::Separators{}, isOnly));
            end += count;
        }
        return {tree.At(0), 1 - axis, lines, {}, true};
    }

    std::deque<tests::Looks> looks;
    model::Tree tree{looks};
    LayoutProblem problem;
};

std::string Text(model::Arrangement const& inLayout) {
    std::string text = inLayout.main == 0 ? " across" : " down";
    for (auto const& child : inLayout.children) {
        text += child->IsLeaf() ? ' ' + std::to_string(child->best[0]) : Text(*child) + ';';
    }
    return text;
}

TEST(LayoutSearch, KeepsWhatTryingEveryLayoutKeeps) {
    std::pair<Lengths, Lengths> const palettes[] = {
        {{0, 1, 2, 3}, {0, 1}},
        {{0, 0.25F, 1, 7.75F, 30, 61.5F, 99.5F}, {0, 1.75F, 12}},
        {{0, 1.0F / 3, 2.0F / 3, 1, 7.0F / 3, 11.0F / 3}, {0, 1.0F / 3, 0.1F}},
        {{-9, -2, 0, 5, 6, 11}, {-4, 0, -13, 2}},
        {{0.1F, 1e-3F, 77.7F, 1e7F, 16777215}, {0, 1e-8F, 1e6F}},
        {{0, 1, 2, 3, kInfinity, kNan}, {0, 2}},
        {{1, 5, 3e38F, -kInfinity}, {0, 1, kInfinity, kNan, -3e38F}},
    };
    std::mt19937 random(5);
    for (auto const& [extents, spaces] : palettes) {
        for (std::size_t round = 0; round < 700; ++round) {
            std::size_t const most = 1 + random() % 4; // alternatives
            std::size_t const children = 1 + random() % (most == 1 ? 10 : 7 - most);
            Group group(random, extents, spaces, round % 6, children, most);
            std::vector<std::string> kept, found;
            for (auto const& layout : group.tree.Rebuilt(0)) {
                kept.push_back(Text(*layout));
            }
            for (FoundLayout const& layout : FindLayouts(group.problem).layouts) {
                found.push_back(Text(group.Built(layout)));
            }
            ASSERT_EQ(found, kept) << "extents to " << extents.back() << ", round " << round;
        }
    }
}

/// The layout with another alternative of one child, and with one line broken in two or some of
/// its children moved to the next line.
FoundLayout Neighbour(std::mt19937& ioRandom, LayoutProblem const& inProblem, FoundLayout layout) {
    auto const below = [&](std::size_t n) { return static_cast<std::uint32_t>(ioRandom() % n); };
    std::uint32_t const child = below(layout.alternatives.size());
    layout.alternatives[child] = below(inProblem.children[child].size());
    auto& lines = layout.lines;
    std::uint32_t const at = below(lines.size()), moved = below(lines[at] + 1);
    lines.insert(lines.begin() + at + 1, below(2) == 0 || at + 1 == lines.size() ? 1 : 0, 0);
    lines[at] -= moved;
    lines[at + 1] += moved;
    lines.erase(std::remove(lines.begin(), lines.end(), 0U), lines.end());
    return layout;
}

TEST(LayoutSearch, NoNeighbourOfAFoundLayoutBeatsAny) {
    std::mt19937 random(11);
    for (float const step : {1.0F, 1.0F / 3}) {
        float const rounding = step == 1 ? 0 : 1e-3F;
        Lengths extents(60);
        std::generate(extents.begin() + 1, extents.end(),
                      [&, x = 0.0F]() mutable { return step * ++x; });
        for (std::size_t const alternatives : {1U, 5U}) {
            Group group(random, extents, {0, 3, 8}, 5, 40, alternatives);
            std::vector<FoundLayout> const layouts = FindLayouts(group.problem).layouts;
            ASSERT_GT(layouts.size(), 20U);
            std::vector<Pair> sizes;
            for (FoundLayout const& layout : layouts) {
                sizes.push_back(group.Built(layout).min);
            }
            for (std::size_t round = 0; round < 200 * layouts.size(); ++round) {
                auto const layout = Neighbour(random, group.problem, layouts[round / 200]);
                Pair const size = group.Built(layout).min;
                ASSERT_TRUE(std::any_of(sizes.begin(), sizes.end(),
                                        [&](Pair const& s) {
                                            return s[0] <= size[0] + rounding &&
                                                   s[1] <= size[1] + rounding;
                                        }))
                    << size[0] << " x " << size[1];
            }
        }
    }
}

TEST(LayoutSearch, StaysSmallWhereSizesSayNothing) {
    for (float const extent : {kNan, kInfinity, 3e38F, 1.0F}) {
        std::size_t const count = extent == 1 ? 3000 : 37; // or there are too many lines
        LayoutProblem problem{
            std::vector(count, std::vector<geom::PointT<float>>(9, {extent, -extent})),
            {},
            {},
            kForms[5]};
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
