#pragma once

#include "tests/arrange/Scene.h"

#include <cmath>
#include <optional>
#include <utility>

/// The layout engine in its plainest form: it tries every combination of alternatives and every
/// break into lines. The tests compare the library with it, call by call.
namespace brindle::arrange::model {

using namespace tests;

struct Arrangement;
using ArrangementP = std::shared_ptr<Arrangement>;
using Alternatives = std::vector<ArrangementP>;
using Separators = std::vector<int>; ///< by number, 0 for none

/// How many sweeps more than there are children the distribution of space may take.
inline constexpr std::size_t kMostRoundingSweeps = 16;

/// What the engine stores for a node.
struct Node {
    int id;
    Looks const& looks;
    std::vector<Call>& log;
    Node* parent;
    bool isValid;
    Separators separators;
    int separatorsBuilt;
    Alternatives set;
};

struct Arrangement {
    Arrangement(Node& inNode, std::size_t inAxis, Alternatives inChildren, Separators inSeparators,
                bool inIsOuter)
        : node(inNode), looks(node.looks), main(inAxis), cross(1 - inAxis), isOuter(inIsOuter),
          children(std::move(inChildren)), separators(std::move(inSeparators)),
          extents(children.size()) {
        if (IsLeaf()) {
            min = looks.min;
            best = looks.best;
            isExpandable = looks.isExpandable;
        }
        for (std::size_t const a : {0U, 1U}) {
            for (auto const& child : children) {
                min[a] = a == main ? min[a] + child->min[a] : std::max(min[a], child->min[a]);
                best[a] = a == main ? best[a] + child->best[a] : std::max(best[a], child->best[a]);
                isExpandable[a] = isExpandable[a] || child->isExpandable[a];
            }
            min[a] = min[a] + (a == main ? Gaps() : 0) + Margins(a);
            best[a] = best[a] + (a == main ? Gaps() : 0) + Margins(a);
        }
    }

    bool IsLeaf() const { return looks.kind == kLeaf; }
    Pair OnAxes(float inMain, float inCross) const {
        return main == 0 ? Pair{inMain, inCross} : Pair{inCross, inMain};
    }
    float Gaps() const {
        return children.empty() ? 0 : static_cast<float>(children.size() - 1) * looks.spacing[main];
    }
    float Lead(std::size_t inAxis) const { return isOuter ? looks.lead[inAxis] : 0; }
    float Margins(std::size_t inAxis) const {
        return isOuter ? looks.lead[inAxis] + looks.trail[inAxis] : 0;
    }
    Pair Inside(Pair inSize) const { return {inSize[0] - Margins(0), inSize[1] - Margins(1)}; }
    float Aligned(std::size_t inAxis, float inOrigin, float inSlack) const {
        int const alignment = looks.alignment[inAxis];
        return inOrigin + (alignment == 1 ? inSlack * 0.5F : alignment == 2 ? inSlack : 0);
    }
    bool Fits(Pair inSize) const { return inSize[0] >= min[0] && inSize[1] >= min[1]; }
    float FromGolden() const {
        double const aspect = static_cast<double>(best[0]) / static_cast<double>(best[1]);
        return static_cast<float>(std::abs(aspect - 1.6180340051651));
    }

    float Expanded(std::size_t inAxis, float inAvailable) const {
        float const available = inAvailable - Margins(inAxis);
        if (IsLeaf()) {
            return looks.Taken(inAxis, available) + Margins(inAxis);
        }
        float sum = 0;
        for (std::size_t i = 0; i < children.size() && sum < available; ++i) {
            sum = inAxis == main ? sum + children[i]->Expanded(inAxis, available - sum)
                                 : std::max(sum, children[i]->Expanded(inAxis, available));
        }
        return (inAxis == main ? std::min(sum + Gaps(), available) : sum) + Margins(inAxis);
    }

    float Clipped(Pair inSize) const {
        if (IsLeaf()) {
            return min[1] * std::max(0.0F, min[0] - inSize[0]) +
                   min[0] * std::max(0.0F, min[1] - inSize[1]);
        }
        float const am = Inside(inSize)[main], ac = Inside(inSize)[cross];
        float result = 0, pos = 0;
        for (std::size_t i = 0; i < children.size(); ++i) {
            float const m = children[i]->min[main], c = children[i]->min[cross];
            result += am < pos + m ? c * (m - std::max(am - pos, 0.0F)) : 0;
            result += m * std::max(c - ac, 0.0F);
            pos += m;
            pos += i > 0 ? looks.spacing[main] : 0;
        }
        return result;
    }

    float Unused(Pair inSize) {
        if (IsLeaf()) {
            return inSize[0] * inSize[1] - Expanded(0, inSize[0]) * Expanded(1, inSize[1]);
        }
        float const am = Inside(inSize)[main], ac = Inside(inSize)[cross];
        Distribute(Inside(inSize));
        float usedMain = 0, inner = 0;
        for (std::size_t i = 0; i < children.size(); ++i) {
            float const g = i > 0 ? looks.spacing[main] : 0, e = extents[i][main];
            inner += children[i]->Unused(OnAxes(e, ac)) + g * ac;
            usedMain += g + e;
        }
        return (am - usedMain) * ac + inner + Margins(0) * inSize[1] + Margins(1) * inSize[0];
    }

    void Distribute(Pair inAvailable) {
        if (std::abs(last[0] - inAvailable[0]) < 0.0001F &&
            std::abs(last[1] - inAvailable[1]) < 0.0001F) {
            return;
        }
        last = inAvailable;
        used = {};
        float slack = inAvailable[main] - min[main] + Margins(main), expandTotal = 0;
        std::vector<bool> takesPart;
        for (std::size_t i = 0; i < children.size(); ++i) {
            extents[i] =
                OnAxes(children[i]->best[main], children[i]->Expanded(cross, inAvailable[cross]));
            used[cross] = std::max(used[cross], extents[i][cross]);
            takesPart.push_back(children[i]->isExpandable[main]);
            expandTotal += takesPart[i] ? extents[i][main] : 0;
        }
        for (std::size_t sweeps = children.size() + kMostRoundingSweeps;
             sweeps > 0 && std::abs(slack) >= 0.0001F && expandTotal > 0; --sweeps) {
            float total = expandTotal;
            for (std::size_t i = 0; i < children.size(); ++i) {
                if (takesPart[i]) {
                    float const old = extents[i][main], target = old * ((total + slack) / total);
                    float const taken =
                        std::max(children[i]->min[main], children[i]->Expanded(main, target));
                    takesPart[i] = taken == target;
                    expandTotal += takesPart[i] ? taken - old : -old;
                    slack -= taken - old;
                    extents[i][main] = taken;
                    total -= old;
                }
            }
        }
        used[main] = inAvailable[main] - slack;
    }

    Pair Arrange(Rect inRect) {
        Pair const origin{inRect.origin[0] + Lead(0), inRect.origin[1] + Lead(1)};
        Pair const space = Inside(inRect.extent);
        if (IsLeaf()) {
            Report("ArrangeContent", 0, {origin, space});
            return {space[0] + looks.surplus[0], space[1] + looks.surplus[1]};
        }
        Distribute(space);
        float cursor = Aligned(main, origin[main], space[main] - used[main]);
        if (isOuter) {
            float const groupCross = Aligned(cross, origin[cross], space[cross] - used[cross]);
            Report("Position", 0, {OnAxes(cursor, groupCross), {}});
        }
        float previousCross = 0, previousPosition = 0, largestCross = 0;
        for (std::size_t i = 0; i < children.size(); ++i) {
            float const spacing = looks.spacing[main];
            cursor += i > 0 ? spacing : 0;
            float const position = Aligned(cross, origin[cross], space[cross] - extents[i][cross]);
            Pair const result = children[i]->Arrange({OnAxes(cursor, position), extents[i]});
            if (i > 0 && separators[i - 1] != 0) {
                bool const isTaller = result[cross] > previousCross;
                Report("Place", main == 0 ? separators[i - 1] : -separators[i - 1],
                       {OnAxes(cursor - spacing, isTaller ? previousPosition : position),
                        OnAxes(spacing, isTaller ? previousCross : result[cross])});
            }
            cursor += result[main];
            previousCross = result[cross];
            previousPosition = position;
            largestCross = std::max(largestCross, result[cross]);
        }
        Pair const size = OnAxes(std::max(space[main], cursor - origin[main]),
                                 std::max(space[cross], largestCross));
        if (isOuter) {
            Report("SetDimensions", 0, {{}, size});
        }
        return size;
    }
    void Report(std::string_view inName, int inDetail, Rect const& inRect) const {
        node.log.push_back({inName, node.id, inDetail, inRect});
    }

    Node& node;
    Looks const& looks;
    std::size_t main, cross;
    bool isOuter;
    Alternatives children;
    Separators separators;
    Pair min{}, best{}, used{}, last{};
    std::array<bool, 2> isExpandable{};
    std::vector<Pair> extents;
};

inline void Add(Alternatives& ioSet, ArrangementP const& inNew) {
    auto const isWithin = [](ArrangementP const& a, ArrangementP const& b) {
        return a->min[0] <= b->min[0] && a->min[1] <= b->min[1];
    };
    auto const x = std::find_if(ioSet.begin(), ioSet.end(), [&](ArrangementP const& y) {
        return isWithin(inNew, y) || isWithin(y, inNew);
    });
    if (x == ioSet.end() || isWithin(inNew, *x)) {
        ioSet.erase(std::remove_if(x, ioSet.end(),
                                   [&](ArrangementP const& y) { return isWithin(inNew, y); }),
                    ioSet.end());
        ioSet.push_back(inNew);
    }
}

inline ArrangementP Selected(Alternatives const& inSet, Pair inSize) {
    ArrangementP b;
    std::optional<float> unusedOfB;
    for (ArrangementP const& x : inSet) {
        bool replaces = b == nullptr || (x->Fits(inSize) && !b->Fits(inSize));
        if (!replaces && !x->Fits(inSize) && !b->Fits(inSize)) {
            replaces = x->Clipped(inSize) < b->Clipped(inSize);
        } else if (!replaces && x->Fits(inSize)) {
            unusedOfB = unusedOfB ? *unusedOfB : b->Unused(inSize);
            float const unused = x->Unused(inSize);
            float const areaOfX = x->min[0] * x->min[1], areaOfB = b->min[0] * b->min[1];
            replaces = unused != *unusedOfB ? unused < *unusedOfB
                       : areaOfX != areaOfB ? areaOfX < areaOfB
                                            : x->FromGolden() < b->FromGolden();
            unusedOfB = replaces ? unused : *unusedOfB;
        }
        b = replaces ? x : b;
    }
    return b;
}

inline void Partition(Node& ioGroup, std::size_t inLine, Alternatives const& inChildren,
                      Alternatives const& inLines, std::size_t inRest, std::size_t inCount,
                      Separators const& inSeparators) {
    auto const first = inChildren.end() - static_cast<std::ptrdiff_t>(inRest);
    for (std::size_t len = inRest - inCount + 1; len >= 1; --len) {
        Alternatives lines = inLines;
        auto const taken = inSeparators.rbegin() + static_cast<std::ptrdiff_t>(len - 1);
        Separators const own(inSeparators.rbegin(), taken);
        Separators const rest(inSeparators.begin(), taken.base());
        Alternatives const run(first, first + static_cast<std::ptrdiff_t>(len));
        lines.push_back(len == 1 ? *first
                                 : std::make_shared<Arrangement>(ioGroup, inLine, run, own,
                                                                 inCount == 1 && inLines.empty()));
        if (inCount == 1) {
            Add(ioGroup.set, std::make_shared<Arrangement>(ioGroup, 1 - inLine, lines, rest, true));
            return;
        }
        Partition(ioGroup, inLine, inChildren, lines, inRest - len, inCount - 1, rest);
    }
}

inline void Build(Node& ioGroup, Alternatives const& inChosen) {
    int const kind = ioGroup.looks.kind;
    for (std::size_t const axis : {0U, 1U}) {
        if (kind == static_cast<int>(axis) || kind == 2) {
            Add(ioGroup.set,
                std::make_shared<Arrangement>(ioGroup, axis, inChosen, ioGroup.separators, true));
        } else if (kind == 3 + static_cast<int>(axis) || kind == 5) {
            for (std::size_t k = 1; k <= inChosen.size(); ++k) {
                Partition(ioGroup, axis, inChosen, {}, inChosen.size(), k, ioGroup.separators);
            }
        }
    }
}

/// The nodes with these looks; the first one is the root.
struct Tree {
    explicit Tree(std::deque<Looks> const& inLooks) : looks(inLooks) {}

    Node& At(int inId) {
        for (auto id = nodes.size(); id <= static_cast<std::size_t>(inId); ++id) {
            nodes.push_back({static_cast<int>(id), looks[id], log, nullptr, false, {}, 0, {}});
        }
        return nodes[static_cast<std::size_t>(inId)];
    }

    Alternatives const& Rebuilt(int inId) {
        Node& node = At(inId);
        if (std::exchange(node.isValid, true)) {
            return node.set;
        }
        node.set.clear();
        if (node.looks.kind == kLeaf) {
            Add(node.set,
                std::make_shared<Arrangement>(node, 0, Alternatives{}, Separators{}, true));
        }
        std::vector<Alternatives> combinations(node.looks.children.empty() ? 0 : 1);
        if (!combinations.empty() && node.separators.size() != node.looks.children.size() - 1) {
            node.separators.resize(node.looks.children.size() - 1);
            for (int& separator : node.separators) {
                separator = node.looks.Separator(++node.separatorsBuilt);
            }
        }
        for (int const child : node.looks.children) {
            At(child).parent = &node;
            Alternatives const& set = Rebuilt(child);
            std::vector<Alternatives> longer(set.empty() ? combinations
                                                         : std::vector<Alternatives>());
            for (std::size_t i = 0; i < combinations.size() * set.size(); ++i) {
                longer.push_back(combinations[i / set.size()]);
                longer.back().push_back(set[i % set.size()]);
            }
            combinations = longer;
        }
        for (Alternatives const& chosen : combinations) {
            Build(node, chosen);
        }
        return node.set;
    }

    /// Selects an alternative of the whole tree, lays it out, and returns the size that it took.
    Pair Arrange(Rect inRect) {
        if (!(inRect.extent[0] > 0 && inRect.extent[1] > 0)) {
            return {};
        }
        ArrangementP const selected = Selected(Rebuilt(0), inRect.extent);
        return selected == nullptr ? Pair{} : selected->Arrange(inRect);
    }

    Pair BestSize() {
        Alternatives const& set = Rebuilt(0);
        auto const isNearer = [](auto const& a, auto const& b) {
            return a->FromGolden() < b->FromGolden();
        };
        auto const best = std::min_element(set.begin(), set.end(), isNearer);
        return best == set.end() ? Pair{} : (*best)->min;
    }

    void Invalidate(int inId) {
        for (Node* node = &At(inId); node != nullptr && std::exchange(node->isValid, false);) {
            node = node->parent;
        }
    }

    /// A change of kind puts a new node in the place of the old one: the children have no parent
    /// then.
    void Renew(int inId) {
        Invalidate(inId);
        Node& node = At(inId);
        node.parent = nullptr;
        node.separators.clear();
        for (int const child : node.looks.children) {
            At(child).parent = At(child).parent == &node ? nullptr : At(child).parent;
        }
    }

    std::deque<Looks> const& looks;
    std::deque<Node> nodes;
    std::vector<Call> log;
};

} // namespace brindle::arrange::model
