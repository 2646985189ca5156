#pragma once

#include "arrange/src/search/LayoutSearch.h"
#include "arrange/src/search/SizeGrid.h"

namespace brindle::arrange::impl {

/// `FindLayouts` for a bounded problem, exact in whole units: finds the unbeaten sizes of each
/// form, merges them, and finds the layout for each size that is left.
std::vector<FoundLayout> MergeFronts(LayoutProblem const& inProblem, SizeGrid const& inGrid);

} // namespace brindle::arrange::impl
