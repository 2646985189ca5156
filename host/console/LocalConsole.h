#pragma once

#include "host/commandline/Diagnostics.h"

#include <string>

namespace brindle::host {

/// Executes the lines that a person types, until "quit" or the end of the input. Failures are
/// printed, and no reason to stop.
void RunConsoleAtTerminal();

/// Executes the lines of a file, or of standard input if the name is "-". Stops at a line that is
/// no command. Failures are reported with the number of their line. Empty lines and those that
/// begin with "#" are skipped. Throws `unreadable_error`.
void RunConsoleScript(std::string const& inName, Diagnostics& ioDiagnostics);

} // namespace brindle::host
