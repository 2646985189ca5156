#include "arrange/src/BuildLayouts.h"

#include <brindle/arrange/GroupArrangement.h>

#include "arrange/src/LayoutSearch.h"

#include <utility>

namespace brindle::arrange::impl {

namespace {

using Chosen = std::vector<boost::intrusive_ptr<IArrangement>>;
using Separators = std::vector<ISeparator*>;

ISeparator* TakeLast(Separators& ioSeparators) {
    if (ioSeparators.empty()) {
        return nullptr;
    }
    ISeparator* const last = ioSeparators.back();
    ioSeparators.pop_back();
    return last;
}

/// A stack of lines of consecutive children. A line of one child is that child's own alternative.
template <typename Line, typename Stack>
boost::intrusive_ptr<IArrangement>
MakeStack(AbstractArrangeableGroup& inGroup, Chosen const& inChosen,
          std::vector<std::uint32_t> const& inLengths, Separators inSeparators) {
    Chosen lines;
    auto first = inChosen.begin();
    for (std::uint32_t const length : inLengths) {
        Chosen const children(first, first + length);
        first += length;
        if (length == 1) {
            lines.push_back(children.front());
            continue;
        }
        Separators separators;
        for (std::uint32_t gap = 1; gap < length; ++gap) {
            separators.push_back(TakeLast(inSeparators));
        }
        bool const isOnlyLine = inLengths.size() == 1;
        lines.push_back(new Line(inGroup, children, separators, isOnlyLine));
    }
    return new Stack(inGroup, lines, inSeparators, true);
}

boost::intrusive_ptr<IArrangement> Make(AbstractArrangeableGroup& inGroup,
                                        FoundLayout const& inFound, Chosen const& inChosen,
                                        Separators const& inSeparators) {
    switch (inFound.form) {
    case LayoutForm::kRow:
        return new RowArrangement(inGroup, inChosen, inSeparators, true);
    case LayoutForm::kColumn:
        return new ColumnArrangement(inGroup, inChosen, inSeparators, true);
    case LayoutForm::kRowsInColumn:
        return MakeStack<RowArrangement, ColumnArrangement>(inGroup, inChosen, inFound.lines,
                                                            inSeparators);
    case LayoutForm::kColumnsInRow:
        return MakeStack<ColumnArrangement, RowArrangement>(inGroup, inChosen, inFound.lines,
                                                            inSeparators);
    }
    return nullptr;
}

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
    for (FoundLayout const& found : FindLayouts(problem)) {
        Chosen chosen;
        for (std::size_t child = 0; child < inAlternatives.size(); ++child) {
            chosen.push_back(inAlternatives[child][found.alternatives[child]]);
        }
        ioSet.AddArrangement(Make(inGroup, found, chosen, inSeparators));
    }
}

} // namespace brindle::arrange::impl
