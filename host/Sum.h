#pragma once

#include "host/Arguments.h"
#include "host/Diagnostics.h"

namespace brindle::host {

/// `brindle sum`: writes the CRC-32, the size and the path of every file below each operand to
/// standard output, sorted by path. What cannot be read is reported, and the rest is done.
void Sum(Arguments const& inArguments, Diagnostics& ioDiagnostics);

} // namespace brindle::host
