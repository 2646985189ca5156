#pragma once

#include "arrange/src/search/LayoutSearch.h"
#include "arrange/src/search/SizeGrid.h"

namespace brindle::arrange::impl {

/// `FindLayouts` by the fronts of the forms, exact in whole units. For a bounded problem.
std::vector<FoundLayout> MergeFronts(LayoutProblem const& inProblem, SizeGrid const& inGrid);

} // namespace brindle::arrange::impl
