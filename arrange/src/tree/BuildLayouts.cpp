#include "arrange/src/tree/BuildLayouts.h"

#include <brindle/arrange/AxisArrangement.h>

#include "arrange/src/search/LayoutSearch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace brindle::arrange::impl {

namespace {

using Chosen = std::vector<boost::intrusive_ptr<IArrangement>>;
using Separators = std::vector<ISeparator*>;

/// Makes the layouts that were found, in their order. Consecutive stacks of the same combination of
/// alternatives and the same number of lines share the objects of the lines that they begin with.
class LayoutMaker {
public:
    LayoutMaker(AbstractArrangeableGroup& inGroup, Alternatives const& inAlternatives,
                Separators const& inSeparators)
        : mGroup(inGroup), mAlternatives(inAlternatives), mSeparators(inSeparators),
          mSeparatorBuilds(inGroup.SeparatorBuilds()) {}

    boost::intrusive_ptr<IArrangement> Make(FoundLayout const& inFound) {
        Chosen chosen;
        for (std::size_t child = 0; child < mAlternatives.size(); ++child) {
            chosen.push_back(mAlternatives[child][inFound.alternatives[child]]);
        }
        switch (inFound.form) {
        case LayoutForm::kRow:
            return new RowArrangement(mGroup, chosen, IfCurrent(mSeparators), true);
        case LayoutForm::kColumn:
            return new ColumnArrangement(mGroup, chosen, IfCurrent(mSeparators), true);
        case LayoutForm::kRowsInColumn:
            return MakeStack<RowArrangement, ColumnArrangement>(inFound, chosen);
        case LayoutForm::kColumnsInRow:
            return MakeStack<ColumnArrangement, RowArrangement>(inFound, chosen);
        }
        return nullptr;
    }

private:
    /// A stack of lines of consecutive children. The line of a single child is that child's own
    /// alternative.
    template <typename Line, typename Stack>
    boost::intrusive_ptr<IArrangement> MakeStack(FoundLayout const& inFound,
                                                 Chosen const& inChosen) {
        std::size_t const shared = SharedLines(inFound);
        Separators separators = mSeparators;
        mLines.resize(shared);
        auto first = inChosen.begin();
        for (std::size_t line = 0; line < inFound.lines.size(); ++line) {
            Chosen const children(first, first + inFound.lines[line]);
            first += inFound.lines[line];
            Separators const ofLine = TakeFromBack(separators, children.size() - 1);
            if (line < shared) {
                continue;
            }
            bool const isOnlyLine = inFound.lines.size() == 1;
            mLines.push_back(children.size() == 1
                                 ? children.front()
                                 : new Line(mGroup, children, IfCurrent(ofLine), isOnlyLine));
        }
        mLast = inFound;
        return new Stack(mGroup, mLines, IfCurrent(separators), true);
    }

    /// How many lines the layout shares with the one made before it. In the order of trying, that
    /// is the layout with which it shares most.
    std::size_t SharedLines(FoundLayout const& inFound) const {
        if (inFound.form != mLast.form || inFound.lines.size() != mLast.lines.size() ||
            inFound.alternatives != mLast.alternatives) {
            return 0;
        }
        auto const differing =
            std::mismatch(inFound.lines.begin(), inFound.lines.end(), mLast.lines.begin()).first;
        return static_cast<std::size_t>(differing - inFound.lines.begin());
    }

    static Separators TakeFromBack(Separators& ioSeparators, std::size_t inCount) {
        Separators taken;
        for (; taken.size() < inCount && !ioSeparators.empty(); ioSeparators.pop_back()) {
            taken.push_back(ioSeparators.back());
        }
        return taken;
    }

    /// None if the client has rebuilt the group's separators while it was asked for sizes.
    Separators const& IfCurrent(Separators const& inSeparators) const {
        return mGroup.SeparatorBuilds() == mSeparatorBuilds ? inSeparators : mNoSeparators;
    }

    AbstractArrangeableGroup& mGroup;
    Alternatives const& mAlternatives;
    Separators const mSeparators;
    Separators const mNoSeparators;
    std::uint32_t mSeparatorBuilds;
    FoundLayout mLast;
    Chosen mLines; // those of the last stack
};

} // namespace

void BuildLayouts(ArrangementSet& ioSet, AbstractArrangeableGroup& inGroup,
                  std::vector<LayoutForm> const& inForms, Alternatives const& inAlternatives,
                  Separators const& inSeparators) {
    LayoutProblem problem;
    problem.forms = inForms;
    problem.spacing = {inGroup.HorizontalSpacing(), inGroup.VerticalSpacing()};
    problem.margins = {inGroup.LeftMargin() + inGroup.RightMargin(),
                       inGroup.TopMargin() + inGroup.BottomMargin()};
    for (auto const& ofChild : inAlternatives) {
        std::vector<geom::PointT<float>>& sizes = problem.children.emplace_back();
        for (auto const& alternative : ofChild) {
            sizes.push_back({alternative->MinWidth(), alternative->MinHeight()});
        }
    }
    LayoutMaker maker(inGroup, inAlternatives, inSeparators);
    FoundLayouts const found = FindLayouts(problem);
    for (FoundLayout const& layout : found.layouts) {
        ioSet.AddArrangement(maker.Make(layout));
    }
    if (!found.areComplete) {
        inGroup.NoteLimits(kLayoutLimit_Breaks);
    }
}

} // namespace brindle::arrange::impl
