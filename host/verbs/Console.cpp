#include "host/verbs/Verbs.h"

#include "host/console/LocalConsole.h"
#include "host/files/FileErrors.h"
#include "host/files/Input.h"

#include <brindle/console/Terminal.h>

namespace brindle::host {

namespace {

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    auto const& operands = inArguments.Operands();
    if (operands.size() > 1) {
        throw usage_error("console takes one SCRIPT");
    }
    if (operands.empty() && console::InputIsTerminal() && console::OutputIsTerminal()) {
        RunConsoleAtTerminal();
        return;
    }
    auto const name = operands.empty() ? kStandardStream : operands[0];
    try {
        RunConsoleScript(name, ioDiagnostics);
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(name, error.what());
    }
}

} // namespace

Verb const kConsoleVerb = {
    "console",
    "[SCRIPT]",
    "commands for developers: settings, trace volumes, files",
    "Executes the commands of the library's console in this process, one a line. 'help' lists\n"
    "them; 'quit' ends, as does the end of the input. They show and change the settings and trace\n"
    "volumes that are kept in the preference directory of this command.\n"
    "\n"
    "At a terminal, lines can be edited; the tabulator completes commands, settings, trace\n"
    "categories and paths; the arrows bring back earlier lines, which are kept in\n"
    "$XDG_STATE_HOME/brindle/console_history; and Ctrl-C drops the line.\n"
    "\n"
    "From a SCRIPT or a pipe there is no prompt. Empty lines and those that begin with # are\n"
    "skipped. A line that is no command is reported with its number and ends the script; a\n"
    "command that fails is reported, and the next one follows. Either makes the exit status 1.\n"
    "The SCRIPT - is standard input.\n",
    {"help"},
    Run,
};

} // namespace brindle::host
