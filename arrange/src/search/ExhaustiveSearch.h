#pragma once

#include "arrange/src/search/LayoutSearch.h"

namespace brindle::arrange::impl {

/// `FindLayouts` by trying every layout, in the float operations and their order by which an
/// arrangement measures itself. For at most 2^18 candidates; every child has an alternative.
std::vector<FoundLayout> TryAllLayouts(LayoutProblem const& inProblem);

} // namespace brindle::arrange::impl
