#pragma once

#include "arrange/src/search/LayoutSearch.h"

namespace brindle::arrange::impl {

/// `FindLayouts` by trying every layout, with the same float operations in the same order as those
/// by which an arrangement measures itself. For at most 2^18 candidates; every child has at least
/// one alternative.
std::vector<FoundLayout> TryAllLayouts(LayoutProblem const& inProblem);

} // namespace brindle::arrange::impl
