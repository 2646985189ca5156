#include <brindle/arrange/Groups.h>

#include "arrange/src/tree/BuildLayouts.h"

namespace brindle::arrange::impl {

template <typename Arrangement>
BasicArrangeableGroup<Arrangement>::BasicArrangeableGroup(IArrangeable* inParent)
    : AbstractArrangeableGroup(inParent) {
    if (inParent != nullptr) {
        SetParent(inParent);
    }
}

template <typename Arrangement>
void BasicArrangeableGroup<Arrangement>::BuildArrangements(
    ArrangementSet& inSet, std::vector<boost::intrusive_ptr<IArrangement>> const& inChosen,
    std::vector<ISeparator*> const& inSeparators) {
    inSet.AddArrangement(new Arrangement(*this, inChosen, inSeparators, true));
}

template <typename Arrangement>
std::vector<LayoutForm> BasicArrangeableGroup<Arrangement>::Forms() const {
    return {std::is_same_v<Arrangement, RowArrangement> ? LayoutForm::kRow : LayoutForm::kColumn};
}

template <typename Line, typename Stack>
WrappingArrangeableGroup<Line, Stack>::WrappingArrangeableGroup(IArrangeable* inParent)
    : AbstractArrangeableGroup(inParent) {
    if (inParent != nullptr) {
        SetParent(inParent);
    }
}

template <typename Line, typename Stack>
void WrappingArrangeableGroup<Line, Stack>::BuildArrangements(
    ArrangementSet& inSet, std::vector<boost::intrusive_ptr<IArrangement>> const& inChosen,
    std::vector<ISeparator*> const& inSeparators) {
    if (inChosen.empty()) {
        return;
    }
    Alternatives oneCombination;
    for (auto const& child : inChosen) {
        oneCombination.push_back({child});
    }
    BuildLayouts(inSet, *this, WrappingArrangeableGroup::Forms(), oneCombination, inSeparators);
}

template <typename Line, typename Stack>
std::vector<LayoutForm> WrappingArrangeableGroup<Line, Stack>::Forms() const {
    return {std::is_same_v<Line, RowArrangement> ? LayoutForm::kRowsInColumn
                                                 : LayoutForm::kColumnsInRow};
}

template class BasicArrangeableGroup<RowArrangement>;
template class BasicArrangeableGroup<ColumnArrangement>;
template class WrappingArrangeableGroup<RowArrangement, ColumnArrangement>;
template class WrappingArrangeableGroup<ColumnArrangement, RowArrangement>;

} // namespace brindle::arrange::impl
