#pragma once

#include "host/layout/NodeDescription.h"

#include <brindle/proplist/PropList.h>

#include <cstddef>

namespace brindle::host::layout {

/// The layout leaves out nodes on deeper levels.
constexpr std::size_t kMostLevels = 2000;

/// Reads a tree from a property list of the form that the help of the verb `layout` describes.
/// Throws `description_error`, also for an unknown key and for more than `kMostLevels` levels.
NodeDescription ReadDescription(proplist::PropList const& inList);

} // namespace brindle::host::layout
