#include "host/verbs/Verbs.h"

#include "host/console/LocalTarget.h"
#include "host/console/RemoteTarget.h"
#include "host/console/RunConsole.h"
#include "host/files/FileErrors.h"
#include "host/files/Input.h"

#include <brindle/console/Terminal.h>

namespace brindle::host {

namespace {

void RunLines(ConsoleTarget& ioTarget, std::vector<std::string> const& inOperands,
              Diagnostics& ioDiagnostics) {
    if (inOperands.empty() && console::InputIsTerminal() && console::OutputIsTerminal()) {
        RunConsoleAtTerminal(ioTarget);
        return;
    }
    auto const name = inOperands.empty() ? kStandardStream : inOperands[0];
    try {
        RunConsoleScript(ioTarget, name, ioDiagnostics);
    } catch (unreadable_error const& error) {
        ioDiagnostics.Report(name, error.what());
    }
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    auto const& operands = inArguments.Operands();
    auto const program = inArguments.Text("attach", "");
    if (inArguments.Has("list")) {
        if (inArguments.Has("attach") || !operands.empty()) {
            throw usage_error("console --list takes nothing else");
        }
        PrintPrograms();
        return;
    }
    if (operands.size() > 1) {
        throw usage_error("console takes one SCRIPT");
    }
    if (!inArguments.Has("attach")) {
        LocalTarget target;
        RunLines(target, operands, ioDiagnostics);
        return;
    }
    try {
        RemoteTarget target(FindProgram(program));
        RunLines(target, operands, ioDiagnostics);
    } catch (detached_error const& error) {
        ioDiagnostics.Report(program, error.what());
    }
}

} // namespace

Verb const kConsoleVerb = {
    "console",
    "[--attach=NAME|PID] [SCRIPT]",
    "commands for developers: settings, trace volumes, files",
    "Executes the commands of the library's console in this process, or in a program that "
    "listens,\n"
    "one a line. 'help' lists\n"
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
    "The SCRIPT - is standard input.\n"
    "\n"
    "  --attach=NAME|PID  executes the lines in the program that listens under NAME, or in\n"
    "                     process PID\n"
    "  --list             writes who listens: a process, two blanks, its name\n",
    {"help", "attach=", "list"},
    Run,
};

} // namespace brindle::host
