#pragma once

#include "host/commandline/Diagnostics.h"
#include "host/console/ConsoleTarget.h"

#include <string>

namespace brindle::host {

/// Executes the lines that a person types, until "quit" or the end of the input. Failures are
/// printed, and no reason to stop, except a `detached_error`, which is thrown.
void RunConsoleAtTerminal(ConsoleTarget& ioTarget);

/// Executes the lines of a file, or of standard input if the name is "-". Stops at a line that is
/// no command, and where the target is detached. Failures are reported with the number of their
/// line. Empty lines and those that begin with "#" are skipped. Throws `unreadable_error`.
void RunConsoleScript(ConsoleTarget& ioTarget, std::string const& inName,
                      Diagnostics& ioDiagnostics);

} // namespace brindle::host
