// Layouts: measuring a group again, and arranging and changing a tree of a thousand leaves. There
// is no packaged peer: the layouts of the toolkits are bound to their widgets.

#include "bench/allocations.h"

#include <brindle/arrange/Groups.h>
#include <brindle/arrange/Single.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace brindle::arrange;
using brindle::geom::PointT;
using brindle::geom::RectT;

struct Leaf final : Single {
    Leaf(float inWidth, float inHeight, bool inIsExpandable)
        : width(inWidth), height(inHeight), isExpandable(inIsExpandable) {}

    float BestWidth() const override { return width; }
    float BestHeight() const override { return height; }
    bool HorizontallyExpandable() const override { return isExpandable; }
    PointT<float> ArrangeContent(RectT<float> const& inRect) override {
        return {inRect.width, inRect.height};
    }

    float width;
    float height;
    bool isExpandable;
};

std::int64_t S_groupsMeasured = 0;

template <typename Kind>
struct Group final : Kind {
    bool VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const override {
        return Visit(inFunction);
    }
    bool VisitChildren(boost::function<bool(IArrangeable&)> inFunction) override {
        ++S_groupsMeasured;
        return Visit(inFunction);
    }
    float HorizontalSpacing() const override { return 4; }
    float VerticalSpacing() const override { return 4; }

    std::vector<IArrangeable*> children;

private:
    template <typename Function>
    bool Visit(Function const& inFunction) const {
        for (IArrangeable* const child : children) {
            if (!inFunction(*child)) {
                return false;
            }
        }
        return true;
    }
};

/// A tree and its nodes, the root last.
class Tree {
public:
    IArrangeable* AddLeaf() {
        std::uniform_int_distribution<int> size(8, 120);
        auto const width = static_cast<float>(size(mRandom));
        auto const height = static_cast<float>(size(mRandom));
        return AddLeaf(width, height, mNodes.size() % 4 == 0);
    }
    IArrangeable* AddLeaf(float inWidth, float inHeight, bool inIsExpandable) {
        return Add(std::make_unique<Leaf>(inWidth, inHeight, inIsExpandable));
    }
    template <typename Kind>
    IArrangeable* AddGroup(std::vector<IArrangeable*> inChildren) {
        auto group = std::make_unique<Group<Kind>>();
        group->children = std::move(inChildren);
        return Add(std::move(group));
    }
    std::vector<std::unique_ptr<IArrangeable>> const& Nodes() const { return mNodes; }
    IArrangeable& Root() const { return *mNodes.back(); }

private:
    IArrangeable* Add(std::unique_ptr<IArrangeable> inNode) {
        mNodes.push_back(std::move(inNode));
        return mNodes.back().get();
    }

    std::mt19937 mRandom{1};
    std::vector<std::unique_ptr<IArrangeable>> mNodes;
};

Tree FlatAutoLayout(std::int64_t inLeaves) {
    Tree tree;
    std::vector<IArrangeable*> leaves;
    for (std::int64_t count = 0; count < inLeaves; ++count) {
        leaves.push_back(tree.AddLeaf());
    }
    tree.AddGroup<AutoLayout>(leaves);
    return tree;
}

/// Ten leaves of one size make 10 by 1, 5 by 2, 4 by 3 and the other way round.
Tree ChildrenWithSixAlternatives() {
    Tree tree;
    std::vector<IArrangeable*> groups;
    for (int child = 0; child < 10; ++child) {
        std::vector<IArrangeable*> leaves;
        for (int count = 0; count < 10; ++count) {
            leaves.push_back(tree.AddLeaf(static_cast<float>(20 + 3 * child),
                                          static_cast<float>(30 - 2 * child), false));
        }
        groups.push_back(tree.AddGroup<AutoLayout>(leaves));
    }
    tree.AddGroup<AutoLayout>(groups);
    return tree;
}

Tree RowsInAColumn() {
    Tree tree;
    std::vector<IArrangeable*> rows;
    for (int row = 0; row < 40; ++row) {
        std::vector<IArrangeable*> leaves;
        for (int count = 0; count < 25; ++count) {
            leaves.push_back(tree.AddLeaf());
        }
        rows.push_back(tree.AddGroup<Row>(leaves));
    }
    tree.AddGroup<Column>(rows);
    return tree;
}

IArrangeable* NestAutoLayouts(Tree& ioTree, int inLevels) {
    if (inLevels == 0) {
        return ioTree.AddLeaf();
    }
    std::vector<IArrangeable*> children;
    for (int count = 0; count < 10; ++count) {
        children.push_back(NestAutoLayouts(ioTree, inLevels - 1));
    }
    return ioTree.AddGroup<AutoLayout>(children);
}

Tree NestedAutoLayouts() {
    Tree tree;
    NestAutoLayouts(tree, 3);
    return tree;
}

/// Measures the root again, with children that are measured already.
void Rebuild(benchmark::State& ioState, Tree const& inTree) {
    IArrangeable& root = inTree.Root();
    root.EnableArrangement(false);
    root.Arrangements();
    for (auto _ : ioState) {
        root.Invalidate();
        benchmark::DoNotOptimize(&root.Arrangements());
    }
    ioState.counters["alternatives"] = static_cast<double>(root.Arrangements().Size());
}

void RebuildFlat(benchmark::State& ioState) {
    Rebuild(ioState, FlatAutoLayout(ioState.range(0)));
    ioState.SetLabel("AutoLayout of " + std::to_string(ioState.range(0)) + " leaves");
}

void RebuildWithAlternatives(benchmark::State& ioState) {
    Tree const tree = ChildrenWithSixAlternatives();
    Rebuild(ioState, tree);
    auto const& root = dynamic_cast<Group<AutoLayout> const&>(tree.Root());
    for (IArrangeable* const child : root.children) {
        if (child->Arrangements().Size() != 6) {
            ioState.SkipWithError("a child has another number of alternatives");
        }
    }
}

using Alternatives = std::vector<boost::intrusive_ptr<impl::IArrangement>>;

/// Adds every way of breaking the last `inLeft` children into `inLines` lines more.
template <typename Line, typename Stack>
void AddEveryBreak(Group<AutoLayout>& ioGroup, Alternatives const& inChildren,
                   Alternatives const& inLinesSoFar, std::size_t inLeft, std::size_t inLines,
                   impl::ArrangementSet& ioSet) {
    std::size_t const first = inChildren.size() - inLeft;
    for (std::size_t length = inLeft - inLines + 1; length > 0; --length) {
        Alternatives lines = inLinesSoFar;
        auto const begin = inChildren.begin() + static_cast<std::ptrdiff_t>(first);
        if (length == 1) {
            lines.push_back(*begin);
        } else {
            Alternatives const line(begin, begin + static_cast<std::ptrdiff_t>(length));
            lines.push_back(new Line(ioGroup, line, {}, inLines == 1 && lines.empty()));
        }
        if (inLines == 1) {
            ioSet.AddArrangement(new Stack(ioGroup, lines, {}, true));
            return;
        }
        AddEveryBreak<Line, Stack>(ioGroup, inChildren, lines, inLeft - length, inLines - 1, ioSet);
    }
}

void RebuildFlatByTryingAll(benchmark::State& ioState) {
    using impl::ColumnArrangement;
    using impl::RowArrangement;
    Tree const tree = FlatAutoLayout(ioState.range(0));
    auto& group = dynamic_cast<Group<AutoLayout>&>(tree.Root());
    Alternatives children;
    for (IArrangeable* const child : group.children) {
        children.push_back(child->Arrangements()[0]);
    }
    impl::ArrangementSet set;
    for (auto _ : ioState) {
        set.Clear();
        for (std::size_t lines = 1; lines <= children.size(); ++lines) {
            AddEveryBreak<RowArrangement, ColumnArrangement>(group, children, {}, children.size(),
                                                             lines, set);
        }
        for (std::size_t lines = 1; lines <= children.size(); ++lines) {
            AddEveryBreak<ColumnArrangement, RowArrangement>(group, children, {}, children.size(),
                                                             lines, set);
        }
        set.Prepare();
    }
    ioState.SetLabel("AutoLayout of " + std::to_string(ioState.range(0)) + " leaves");
    ioState.counters["alternatives"] = static_cast<double>(set.Size());
}

/// Uses another rectangle each time, so that all space is distributed again.
void ArrangeAll(benchmark::State& ioState, Tree const& inTree) {
    IArrangeable& root = inTree.Root();
    RectT<float> rect{0, 0, 1920, 1080};
    root.Arrange(rect);
    std::int64_t const allocationsBefore = Allocations();
    for (auto _ : ioState) {
        rect.width = rect.width < 2400 ? rect.width + 8 : 1280;
        rect.height = rect.height < 1440 ? rect.height + 5 : 720;
        benchmark::DoNotOptimize(root.Arrange(rect));
    }
    ioState.counters["allocations"] = static_cast<double>(Allocations() - allocationsBefore);
}

void ArrangeRows(benchmark::State& ioState) {
    ArrangeAll(ioState, RowsInAColumn());
}

void ArrangeAutoLayouts(benchmark::State& ioState) {
    ArrangeAll(ioState, NestedAutoLayouts());
}

void ChangeALeaf(benchmark::State& ioState) {
    Tree const tree = RowsInAColumn();
    tree.Root().Arrange({0, 0, 1920, 1080});
    auto& leaf = dynamic_cast<Leaf&>(*tree.Nodes()[500]);
    std::int64_t const measuredBefore = S_groupsMeasured;
    for (auto _ : ioState) {
        leaf.width = leaf.width < 100 ? leaf.width + 1 : 10;
        leaf.Invalidate();
    }
    ioState.counters["groups"] = benchmark::Counter(
        static_cast<double>(S_groupsMeasured - measuredBefore), benchmark::Counter::kAvgIterations);
}

void ChangeAllLeaves(benchmark::State& ioState) {
    Tree const tree = RowsInAColumn();
    IArrangeable& root = tree.Root();
    root.Arrange({0, 0, 1920, 1080});
    std::int64_t const measuredBefore = S_groupsMeasured;
    for (auto _ : ioState) {
        root.EnableArrangement(false);
        for (auto const& node : tree.Nodes()) {
            node->Invalidate();
        }
        root.EnableArrangement(true);
    }
    ioState.counters["groups"] = benchmark::Counter(
        static_cast<double>(S_groupsMeasured - measuredBefore), benchmark::Counter::kAvgIterations);
}

BENCHMARK(RebuildFlat)
    ->Name("layout measure/brindle")
    ->Arg(12)
    ->Arg(16)
    ->Arg(24)
    ->Arg(64)
    ->Arg(200);
BENCHMARK(RebuildFlatByTryingAll)->Name("layout measure/every break tried")->Arg(12)->Arg(16);
BENCHMARK(RebuildWithAlternatives)
    ->Name("layout measure/brindle/AutoLayout of 10 children with 6 alternatives each");
BENCHMARK(ArrangeRows)->Name("layout arrange/brindle/1000 leaves in rows in a column");
BENCHMARK(ArrangeAutoLayouts)->Name("layout arrange/brindle/1000 leaves in nested AutoLayouts");
BENCHMARK(ChangeALeaf)->Name("layout change/brindle/1 leaf of 1000");
BENCHMARK(ChangeAllLeaves)->Name("layout change/(all measured again)/1 leaf of 1000");

} // namespace
