#include "arrange/src/LayoutSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

namespace brindle::arrange::impl {

namespace {

using Size = geom::PointT<float>;
using Form = LayoutForm;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

/// The set of a group that adds every layout there is.
class Model {
public:
    explicit Model(LayoutProblem const& inProblem) : mProblem(inProblem) { Combine({}); }

    std::vector<std::pair<Size, FoundLayout>> set;

    static Size Measure(LayoutProblem const& inProblem, FoundLayout const& inLayout) {
        std::vector<Size> children;
        for (std::size_t i = 0; i < inLayout.alternatives.size(); ++i) {
            children.push_back(inProblem.children[i][inLayout.alternatives[i]]);
        }
        bool const isRow = HasRows(inLayout.form);
        if (!IsWrapping(inLayout.form)) {
            return Join(inProblem, children, isRow, true);
        }
        std::vector<Size> lines;
        auto child = children.begin();
        for (std::uint32_t const count : inLayout.lines) {
            lines.push_back(count == 1 ? *child
                                       : Join(inProblem, {child, child + count}, isRow,
                                              inLayout.lines.size() == 1));
            child += count;
        }
        return Join(inProblem, lines, !isRow, true);
    }

private:
    static Size Join(LayoutProblem const& inProblem, std::vector<Size> const& inChildren,
                     bool inIsRow, bool inIsOuter) {
        float Size::*const main = inIsRow ? &Size::x : &Size::y;
        float Size::*const cross = inIsRow ? &Size::y : &Size::x;
        Size size;
        for (Size const& child : inChildren) {
            size.*main += child.*main;
            size.*cross = std::max(size.*cross, child.*cross);
        }
        size.*main += static_cast<float>(inChildren.size() - 1) * inProblem.spacing.*main;
        size.*main += inIsOuter ? inProblem.margins.*main : 0;
        size.*cross += inIsOuter ? inProblem.margins.*cross : 0;
        return size;
    }

    void Combine(std::vector<std::uint32_t> inChosen) {
        if (inChosen.size() < mProblem.children.size()) {
            for (std::uint32_t a = 0; a < mProblem.children[inChosen.size()].size(); ++a) {
                inChosen.push_back(a);
                Combine(inChosen);
                inChosen.pop_back();
            }
            return;
        }
        auto const count = static_cast<std::uint32_t>(inChosen.size());
        for (Form const form : mProblem.forms) {
            if (!IsWrapping(form)) {
                Add({inChosen, form, {}});
                continue;
            }
            for (std::uint32_t lines = 1; lines <= count; ++lines) {
                Partition({inChosen, form, {}}, count, lines);
            }
        }
    }

    void Partition(FoundLayout inLayout, std::uint32_t inRest, std::uint32_t inLines) {
        for (std::uint32_t length = inRest - inLines + 1; length > 0; --length) {
            inLayout.lines.push_back(length);
            if (inLines == 1) {
                return Add(inLayout);
            }
            Partition(inLayout, inRest - length, inLines - 1);
            inLayout.lines.pop_back();
        }
    }

    void Add(FoundLayout const& inLayout) {
        Size const size = Measure(mProblem, inLayout);
        auto const isAtMost = [](Size a, Size b) { return a.x <= b.x && a.y <= b.y; };
        auto const at = std::find_if(set.begin(), set.end(), [&](auto const& x) {
            return isAtMost(size, x.first) || isAtMost(x.first, size);
        });
        if (at == set.end() || isAtMost(size, at->first)) {
            set.erase(std::remove_if(at, set.end(),
                                     [&](auto const& y) { return isAtMost(size, y.first); }),
                      set.end());
            set.emplace_back(size, inLayout);
        }
    }

    LayoutProblem const& mProblem;
};

std::string Text(FoundLayout const& inLayout) {
    std::string text = "form " + std::to_string(static_cast<int>(inLayout.form));
    for (auto const* list : {&inLayout.alternatives, &inLayout.lines}) {
        text += " :";
        for (std::uint32_t const n : *list) {
            text += ' ' + std::to_string(n);
        }
    }
    return text;
}

std::vector<Form> const kKinds[] = {
    {Form::kRow},          {Form::kColumn},       {Form::kRow, Form::kColumn},
    {Form::kRowsInColumn}, {Form::kColumnsInRow}, {Form::kRowsInColumn, Form::kColumnsInRow}};

/// Sizes out of which the random problems are made.
struct Palette {
    std::vector<float> extents;
    std::vector<float> spaces;
};

LayoutProblem RandomProblem(std::mt19937& ioRandom, Palette const& inPalette,
                            std::size_t inChildren, std::size_t inMostAlternatives) {
    auto const any = [&](auto const& list) { return list[ioRandom() % list.size()]; };
    auto const extents = [&] { return Size{any(inPalette.extents), any(inPalette.extents)}; };
    LayoutProblem problem;
    for (std::size_t i = 0; i < inChildren; ++i) {
        problem.children.emplace_back(1 + ioRandom() % inMostAlternatives);
        std::generate(problem.children.back().begin(), problem.children.back().end(), extents);
    }
    problem.spacing = {any(inPalette.spaces), any(inPalette.spaces)};
    problem.margins = {any(inPalette.spaces), any(inPalette.spaces)};
    problem.forms = kKinds[ioRandom() % std::size(kKinds)];
    return problem;
}

Palette Steps(float inStep, int inCount, std::vector<float> inSpaces) {
    Palette palette{{}, std::move(inSpaces)};
    for (int i = 0; i < inCount; ++i) {
        palette.extents.push_back(static_cast<float>(i) * inStep);
    }
    return palette;
}

TEST(LayoutSearch, KeepsWhatTryingEveryLayoutKeeps) {
    Palette const palettes[] = {
        Steps(1, 4, {0, 1}),
        Steps(7, 30, {0, 0, 3, 16}),
        Steps(0.25f, 400, {0, 1.75f, 12}),
        Steps(1.0f / 3, 12, {0, 1.0f / 3, 0.1f}),
        {{-9, -2, 0, 5, 6, 11}, {-4, 0, -13, 2}},
        {{0.1f, 1e-3f, 77.7f, 1e7f, 16777215}, {0, 1e-8f, 1e6f}},
        {{0, 1, 2, 3, kInfinity, kNan}, {0, 2}},
        {{1, 5, 3e38f, -kInfinity}, {0, 1, kInfinity, kNan, -3e38f}},
    };
    std::mt19937 random(5);
    for (Palette const& palette : palettes) {
        for (int round = 0; round < 700; ++round) {
            std::size_t const most = 1 + random() % 4; // alternatives
            std::size_t const children = 1 + random() % (most == 1 ? 10 : 7 - most);
            LayoutProblem const problem = RandomProblem(random, palette, children, most);
            std::string expected;
            for (auto const& [size, layout] : Model(problem).set) {
                expected += Text(layout) + '\n';
            }
            std::string found;
            for (FoundLayout const& layout : FindLayouts(problem)) {
                found += Text(layout) + '\n';
            }
            ASSERT_EQ(expected, found) << "palette " << &palette - palettes << ", round " << round;
        }
    }
}

/// Another alternative of a child, and children moved from a line to a new or a neighbouring one.
FoundLayout Neighbour(std::mt19937& ioRandom, LayoutProblem const& inProblem, FoundLayout layout) {
    auto const below = [&](std::size_t n) { return static_cast<std::uint32_t>(ioRandom() % n); };
    std::uint32_t const child = below(layout.alternatives.size());
    layout.alternatives[child] = below(inProblem.children[child].size());
    auto& lines = layout.lines;
    std::uint32_t const at = below(lines.size());
    std::uint32_t const moved = below(lines[at] + 1);
    lines[at] -= moved;
    if (below(2) == 0) {
        lines.insert(lines.begin() + at, 0);
    }
    lines[std::min<std::size_t>(at + below(2), lines.size() - 1)] += moved;
    lines.erase(std::remove(lines.begin(), lines.end(), 0U), lines.end());
    return layout;
}

TEST(LayoutSearch, NoNeighbourOfAFoundLayoutBeatsAny) {
    std::mt19937 random(11);
    for (float const step : {1.0f, 1.0f / 3}) {
        float const rounding = step == 1 ? 0 : 1e-3f;
        for (std::size_t const alternatives : {1U, 5U}) {
            Palette const palette = Steps(step, 60, {0, 3, 8});
            LayoutProblem problem = RandomProblem(random, palette, 40, alternatives);
            problem.forms = kKinds[5];
            std::vector<FoundLayout> const layouts = FindLayouts(problem);
            std::vector<Size> sizes;
            for (FoundLayout const& layout : layouts) {
                sizes.push_back(Model::Measure(problem, layout));
            }
            ASSERT_GT(sizes.size(), 20U);
            auto const countWithin = [&sizes](Size bound) {
                return std::count_if(sizes.begin(), sizes.end(), [bound](Size const& s) {
                    return s.x <= bound.x && s.y <= bound.y;
                });
            };
            for (std::size_t i = 0; i < sizes.size(); ++i) {
                ASSERT_TRUE(rounding > 0 || countWithin(sizes[i]) == 1) << Text(layouts[i]);
                for (int round = 0; round < 200; ++round) {
                    FoundLayout const layout = Neighbour(random, problem, layouts[i]);
                    Size const size = Model::Measure(problem, layout);
                    ASSERT_GE(countWithin({size.x + rounding, size.y + rounding}), 1)
                        << Text(layout);
                }
            }
        }
    }
}

TEST(LayoutSearch, StaysSmallWhereSizesSayNothing) {
    for (float const extent : {kNan, kInfinity, 3e38f, 1.0f}) {
        std::size_t const count = extent == 1 ? 3000 : 37; // or there are too many lines
        LayoutProblem problem{
            std::vector(count, std::vector<Size>(9, {extent, -extent})), {}, {}, kKinds[5]};
        std::vector<FoundLayout> const layouts = FindLayouts(problem);
        ASSERT_EQ(count == 37 ? 14U : 26U, layouts.size());
        for (FoundLayout const& layout : layouts) {
            EXPECT_EQ(count, std::accumulate(layout.lines.begin(), layout.lines.end(), 0U));
        }
        problem.children.back().clear();
        EXPECT_TRUE(FindLayouts(problem).empty());
    }
}

} // namespace

} // namespace brindle::arrange::impl
