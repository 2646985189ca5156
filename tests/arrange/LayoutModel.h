#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <optional>
#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

/// The layout engine as plainly as it can be told: every combination of alternatives and every
/// break into lines is tried. The tests hold the library to it, call by call.
namespace brindle::arrange::model {

using Pair = std::array<float, 2>; ///< index 0 goes across (x, width), index 1 down (y, height)

struct Rect {
    Pair origin{};
    Pair extent{};
};

/// A call on a client's object, or a result that the client gets.
struct Call {
    std::string_view name;
    int node;
    int detail; ///< of a separator: its number, negative if it lies between children of a column
    Rect rect;  ///< a point fills `origin`, a size `extent`
};

inline bool operator==(Call const& inLHS, Call const& inRHS) {
    return inLHS.name == inRHS.name && inLHS.node == inRHS.node && inLHS.detail == inRHS.detail &&
           std::memcmp(&inLHS.rect, &inRHS.rect, sizeof inLHS.rect) == 0;
}

inline std::ostream& operator<<(std::ostream& ioStream, Call const& inCall) {
    return ioStream << inCall.name << " of " << inCall.node << " (" << inCall.detail << ") at "
                    << inCall.rect.origin[0] << ", " << inCall.rect.origin[1] << " size "
                    << inCall.rect.extent[0] << ", " << inCall.rect.extent[1];
}

struct Arrangement;
using ArrangementP = std::shared_ptr<Arrangement>;
using Alternatives = std::vector<ArrangementP>;
using Separators = std::vector<int>; ///< by number, 0 for none

/// How often space is shared out again when that leaves only what rounding leaves.
inline constexpr std::size_t kMostRoundingSweeps = 16;
inline constexpr int kLeaf = -1; ///< beside the values of the group kinds, 0 to 5

/// A node: what the client answers for it, and below that what the engine keeps.
struct Node {
    int id = 0;
    int kind = kLeaf;
    Pair min{}, best{}, limit{}, lead{}, trail{}, spacing{};
    Pair surplus{}; ///< what a leaf reports beyond what it got
    std::array<bool, 2> isExpandable{};
    std::array<int, 2> alignment{};
    int separatorEvery = 0; ///< each separator with a number that this divides is there
    std::vector<Node*> children;

    float Taken(std::size_t inAxis, float inAvailable) const {
        return isExpandable[inAxis] ? std::min(inAvailable, limit[inAxis]) : best[inAxis];
    }
    int Separator(int inNumber) const {
        return separatorEvery != 0 && inNumber % separatorEvery == 0 ? inNumber : 0;
    }

    std::vector<Call>* log = nullptr;
    Node* parent = nullptr;
    bool isValid = false;
    Separators separators;
    int separatorsBuilt = 0;
    Alternatives set;
};

struct Arrangement {
    Arrangement(Node& inNode, std::size_t inAxis, Alternatives inChildren, Separators inSeparators,
                bool inIsOuter)
        : node(inNode), main(inAxis), cross(1 - inAxis), isOuter(inIsOuter),
          children(std::move(inChildren)), separators(std::move(inSeparators)),
          extents(children.size()) {
        if (IsLeaf()) {
            min = node.min;
            best = node.best;
            isExpandable = node.isExpandable;
        }
        for (auto const& child : children) {
            min[main] += child->min[main];
            best[main] += child->best[main];
            min[cross] = std::max(min[cross], child->min[cross]);
            best[cross] = std::max(best[cross], child->best[cross]);
            isExpandable[0] = isExpandable[0] || child->isExpandable[0];
            isExpandable[1] = isExpandable[1] || child->isExpandable[1];
        }
        min = Along(min[main] + Gaps() + Margins(main), min[cross] + Margins(cross));
        best = Along(best[main] + Gaps() + Margins(main), best[cross] + Margins(cross));
    }

    bool IsLeaf() const { return node.kind == kLeaf; }
    Pair Along(float inMain, float inCross) const {
        return main == 0 ? Pair{inMain, inCross} : Pair{inCross, inMain};
    }
    float Gaps() const {
        return children.empty() ? 0 : static_cast<float>(children.size() - 1) * node.spacing[main];
    }
    float Lead(std::size_t inAxis) const { return isOuter ? node.lead[inAxis] : 0; }
    float Margins(std::size_t inAxis) const {
        return isOuter ? node.lead[inAxis] + node.trail[inAxis] : 0;
    }
    float Aligned(std::size_t inAxis, float inOrigin, float inSlack) const {
        int const alignment = node.alignment[inAxis];
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
            return node.Taken(inAxis, available) + Margins(inAxis);
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
        float const am = inSize[main] - Margins(main), ac = inSize[cross] - Margins(cross);
        float result = 0, pos = 0;
        for (std::size_t i = 0; i < children.size(); ++i) {
            float const m = children[i]->min[main], c = children[i]->min[cross];
            if (am < pos + m) {
                result += c * (m - std::max(am - pos, 0.0F));
            }
            result += m * std::max(c - ac, 0.0F);
            pos += m;
            pos += i > 0 ? node.spacing[main] : 0;
        }
        return result;
    }

    float Unused(Pair inSize) {
        if (IsLeaf()) {
            return inSize[0] * inSize[1] - Expanded(0, inSize[0]) * Expanded(1, inSize[1]);
        }
        float const am = inSize[main] - Margins(main), ac = inSize[cross] - Margins(cross);
        Distribute(Along(am, ac));
        float used0 = 0, inner = 0;
        for (std::size_t i = 0; i < children.size(); ++i) {
            float const g = i > 0 ? node.spacing[main] : 0, e = extents[i][main];
            inner += children[i]->Unused(Along(e, ac)) + g * ac;
            used0 += g + e;
        }
        return (am - used0) * ac + inner + Margins(0) * inSize[1] + Margins(1) * inSize[0];
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
                Along(children[i]->best[main], children[i]->Expanded(cross, inAvailable[cross]));
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
        Pair const &origin = inRect.origin, &extent = inRect.extent;
        if (IsLeaf()) {
            Pair const size{extent[0] - Margins(0), extent[1] - Margins(1)};
            Pair const at{origin[0] + Lead(0), origin[1] + Lead(1)};
            node.log->push_back({"ArrangeContent", node.id, 0, {at, size}});
            return {size[0] + node.surplus[0], size[1] + node.surplus[1]};
        }
        float const am = extent[main] - Margins(main), ac = extent[cross] - Margins(cross);
        Distribute(Along(am, ac));
        float const originMain = origin[main] + Lead(main);
        float const originCross = origin[cross] + Lead(cross);
        float cursor = Aligned(main, originMain, am - used[main]);
        if (isOuter) {
            float const groupCross = Aligned(cross, originCross, ac - used[cross]);
            node.log->push_back({"Position", node.id, 0, {Along(cursor, groupCross), {}}});
        }
        float previousCross = 0, previousPosition = 0, largestCross = 0;
        for (std::size_t i = 0; i < children.size(); ++i) {
            float const spacing = node.spacing[main];
            cursor += i > 0 ? spacing : 0;
            float const position = Aligned(cross, originCross, ac - extents[i][cross]);
            Pair const result = children[i]->Arrange({Along(cursor, position), extents[i]});
            if (i > 0 && separators[i - 1] != 0) {
                bool const isTaller = result[cross] > previousCross;
                node.log->push_back(
                    {"Place",
                     node.id,
                     main == 0 ? separators[i - 1] : -separators[i - 1],
                     {Along(cursor - spacing, isTaller ? previousPosition : position),
                      Along(spacing, isTaller ? previousCross : result[cross])}});
            }
            cursor += result[main];
            previousCross = result[cross];
            previousPosition = position;
            largestCross = std::max(largestCross, result[cross]);
        }
        Pair const size = Along(std::max(am, cursor - originMain), std::max(ac, largestCross));
        if (isOuter) {
            node.log->push_back({"SetDimensions", node.id, 0, {{}, size}});
        }
        return size;
    }

    Node& node;
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
        Separators rest = inSeparators, own;
        while (own.size() + 1 < len) {
            own.push_back(rest.back());
            rest.pop_back();
        }
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
    for (std::size_t const axis : {0U, 1U}) {
        if (ioGroup.kind == static_cast<int>(axis) || ioGroup.kind == 2) {
            Add(ioGroup.set,
                std::make_shared<Arrangement>(ioGroup, axis, inChosen, ioGroup.separators, true));
        } else if (ioGroup.kind == 3 + static_cast<int>(axis) || ioGroup.kind == 5) {
            for (std::size_t k = 1; k <= inChosen.size(); ++k) {
                Partition(ioGroup, axis, inChosen, {}, inChosen.size(), k, ioGroup.separators);
            }
        }
    }
}

void Rebuild(Node&);

inline void Combine(Node& ioGroup, std::size_t inIndex, Alternatives const& inChosen) {
    if (inIndex == ioGroup.children.size()) {
        Build(ioGroup, inChosen);
        return;
    }
    Rebuild(*ioGroup.children[inIndex]);
    Alternatives const& set = ioGroup.children[inIndex]->set;
    if (set.empty()) {
        Combine(ioGroup, inIndex + 1, inChosen);
    }
    for (auto const& alternative : set) {
        Alternatives chosen = inChosen;
        chosen.push_back(alternative);
        Combine(ioGroup, inIndex + 1, chosen);
    }
}

/// Rebuilds the node if it is invalid.
inline void Rebuild(Node& ioNode) {
    if (ioNode.isValid) {
        return;
    }
    ioNode.set.clear();
    if (ioNode.kind == kLeaf) {
        Add(ioNode.set,
            std::make_shared<Arrangement>(ioNode, 0, Alternatives{}, Separators{}, true));
    }
    for (Node* const child : ioNode.children) {
        child->parent = &ioNode;
    }
    if (!ioNode.children.empty()) {
        if (ioNode.separators.size() != ioNode.children.size() - 1) {
            ioNode.separators.assign(ioNode.children.size() - 1, 0);
            for (int& separator : ioNode.separators) {
                separator = ioNode.Separator(++ioNode.separatorsBuilt);
            }
        }
        Combine(ioNode, 0, {});
    }
    ioNode.isValid = true;
}

/// Selects an alternative of the whole tree and lays it out. Result: the size taken.
inline Pair Arrange(Node& ioRoot, Rect inRect) {
    if (!(inRect.extent[0] > 0 && inRect.extent[1] > 0)) {
        return {};
    }
    Rebuild(ioRoot);
    ArrangementP const selected = Selected(ioRoot.set, inRect.extent);
    return selected == nullptr ? Pair{} : selected->Arrange(inRect);
}

inline Pair BestSize(Node& ioNode) {
    Rebuild(ioNode);
    ArrangementP best;
    for (ArrangementP const& x : ioNode.set) {
        best = best == nullptr || x->FromGolden() < best->FromGolden() ? x : best;
    }
    return best == nullptr ? Pair{} : best->min;
}

inline void Invalidate(Node* ioNode) {
    for (; ioNode != nullptr && std::exchange(ioNode->isValid, false); ioNode = ioNode->parent) {
    }
}

/// A new kind is a new node in the old one's place: the children have lost their parent.
inline void SetKind(Node& ioNode, int inKind) {
    Invalidate(&ioNode);
    ioNode.kind = inKind;
    ioNode.parent = nullptr;
    ioNode.separators.clear();
    for (Node* const child : ioNode.children) {
        child->parent = child->parent == &ioNode ? nullptr : child->parent;
    }
}

} // namespace brindle::arrange::model
