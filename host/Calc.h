#pragma once

#include "host/Arguments.h"
#include "host/Diagnostics.h"

namespace brindle::host {

/// `brindle calc`: writes the value of an expression to standard output.
void Calc(Arguments const& inArguments, Diagnostics& ioDiagnostics);

} // namespace brindle::host
