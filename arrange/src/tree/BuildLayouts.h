#pragma once

#include <brindle/arrange/AbstractArrangeableGroup.h>

#include <vector>

namespace brindle::arrange::impl {

/// The alternatives of each child, in the order of the children; each child has at least one.
using Alternatives = std::vector<std::vector<boost::intrusive_ptr<IArrangement>>>;

/// Adds to the set what would be left in it after adding every layout of these forms for every
/// combination of the alternatives, in the same order.
void BuildLayouts(ArrangementSet& ioSet, AbstractArrangeableGroup& inGroup,
                  std::vector<LayoutForm> const& inForms, Alternatives const& inAlternatives,
                  std::vector<ISeparator*> const& inSeparators);

} // namespace brindle::arrange::impl
