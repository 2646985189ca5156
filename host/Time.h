#pragma once

#include "host/Arguments.h"
#include "host/Diagnostics.h"

namespace brindle::host {

/// `brindle time`: writes a time in ticks, in seconds, and in frames and timecode at the common
/// rates to standard output, a labelled line each.
void Time(Arguments const& inArguments, Diagnostics& ioDiagnostics);

} // namespace brindle::host
