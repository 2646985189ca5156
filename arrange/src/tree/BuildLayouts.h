#pragma once

#include <brindle/arrange/AbstractArrangeableGroup.h>

#include <vector>

namespace brindle::arrange::impl {

/// What each child offers, in the order of the children; none offers nothing.
using Alternatives = std::vector<std::vector<boost::intrusive_ptr<IArrangement>>>;

/// Adds to the set what is left of all layouts of these families over all combinations of the
/// alternatives, in the order in which trying each of them would leave it.
void BuildLayouts(ArrangementSet& ioSet, AbstractArrangeableGroup& inGroup,
                  std::vector<LayoutForm> const& inForms, Alternatives const& inAlternatives,
                  std::vector<ISeparator*> const& inSeparators);

} // namespace brindle::arrange::impl
