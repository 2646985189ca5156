#pragma once

#include "host/Arguments.h"
#include "host/Diagnostics.h"

namespace brindle::host {

/// `brindle guid`: writes as many new identifiers as the operand tells, or one, to standard output,
/// one a line. Ends with `fatal_error` if the system gives none.
void Guid(Arguments const& inArguments, Diagnostics& ioDiagnostics);

} // namespace brindle::host
