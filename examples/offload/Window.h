#pragma once

#include "Offload.h"

#include <brindle/proplist/TableLocalizer.h>

namespace offload {

/// Shows the window in which the user offloads one card after the other, until it is closed.
void RunWindow(proplist::PropList& ioPreferences, proplist::TableLocalizer& ioTexts,
               Executor const& inPool);

} // namespace offload
