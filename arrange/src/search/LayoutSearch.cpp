#include "arrange/src/search/LayoutSearch.h"

#include "arrange/src/search/ExhaustiveSearch.h"
#include "arrange/src/search/FrontMerge.h"

#include <algorithm>
#include <cmath>

namespace brindle::arrange::impl {

namespace {

constexpr double kMostTried = 1 << 18;
constexpr double kMostTriedUnbounded = 1 << 10; // because sizes that do not compare are all kept
constexpr double kMostLines = 1 << 21;          // those of two thousand children
constexpr double kMostLineSteps = 1e9;          // some seconds' walk

double CandidateCount(LayoutProblem const& inProblem) noexcept {
    double combinations = 1;
    for (auto const& alternatives : inProblem.children) {
        combinations *= static_cast<double>(alternatives.size());
    }
    double layouts = 0;
    double const gaps = static_cast<double>(inProblem.children.size()) - 1;
    for (LayoutForm const form : inProblem.forms) {
        layouts += IsWrapping(form) ? std::exp2(gaps) : 1;
    }
    return combinations * layouts;
}

/// Whether there are too many runs of children to look at each as a line.
bool HasTooManyLines(LayoutProblem const& inProblem) noexcept {
    auto const count = static_cast<double>(inProblem.children.size());
    double alternatives = 0;
    for (auto const& child : inProblem.children) {
        alternatives += static_cast<double>(child.size());
    }
    double const lines = count * (count + 1) / 2;
    double const steps =
        lines * (alternatives - count); // in the worst case each line passes all of them
    return std::any_of(inProblem.forms.begin(), inProblem.forms.end(), IsWrapping) &&
           (lines > kMostLines || steps > kMostLineSteps);
}

/// Layouts with lines of all children, then of 2^k, … 4, 2 and 1 children.
std::vector<FoundLayout> EvenLayouts(LayoutProblem const& inProblem) {
    auto const count = static_cast<std::uint32_t>(inProblem.children.size());
    std::vector<std::uint32_t> lengths{1};
    while (lengths.back() < count) {
        lengths.push_back(std::min(count, 2 * lengths.back()));
    }
    std::vector<FoundLayout> layouts;
    for (LayoutForm const form : inProblem.forms) {
        FoundLayout layout{std::vector<std::uint32_t>(count), form, {}};
        if (!IsWrapping(form)) {
            layouts.push_back(layout);
            continue;
        }
        for (auto length = lengths.rbegin(); length != lengths.rend(); ++length) {
            layout.lines.assign(count / *length, *length);
            if (count % *length != 0) {
                layout.lines.push_back(count % *length);
            }
            layouts.push_back(layout);
        }
    }
    return layouts;
}

} // namespace

FoundLayouts FindLayouts(LayoutProblem const& inProblem) {
    if (inProblem.children.empty() ||
        std::any_of(inProblem.children.begin(), inProblem.children.end(),
                    [](auto const& alternatives) { return alternatives.empty(); })) {
        return {};
    }
    SizeGrid const grid(inProblem);
    double const mostTried = grid.IsBounded() ? kMostTried : kMostTriedUnbounded;
    if (!grid.IsExact() && CandidateCount(inProblem) <= mostTried) {
        return {TryAllLayouts(inProblem), true};
    }
    if (!grid.IsBounded() || HasTooManyLines(inProblem)) {
        return {EvenLayouts(inProblem), false};
    }
    return {MergeFronts(inProblem, grid), true};
}

} // namespace brindle::arrange::impl
