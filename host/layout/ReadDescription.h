#pragma once

#include "host/layout/NodeDescription.h"

#include <brindle/proplist/PropList.h>

#include <cstddef>

namespace brindle::host::layout {

/// The layout leaves out what stands deeper.
constexpr std::size_t kMostLevels = 2000;

/// The tree that a property list describes, in the form that the verb `layout` tells. No more than
/// `kMostLevels` deep. Throws `description_error`, also for a key that has no meaning.
NodeDescription ReadDescription(proplist::PropList const& inList);

} // namespace brindle::host::layout
