#pragma once

#include "host/console/ConsoleTarget.h"

#include <brindle/console/RemoteConsole.h>

namespace brindle::host {

/// Executes lines in a program that listens.
class RemoteTarget : public ConsoleTarget {
public:
    /// Throws `detached_error` if it does not accept.
    explicit RemoteTarget(console::ListeningProgram const& inProgram);

    std::string Prompt() const override { return mPrompt; }
    /// Throws `detached_error` if the program has ended or closed the connection.
    void Execute(std::string const& inLine) override;
    void ShowHelp() override;
    LineCompletions Complete(std::string const& inLine, std::size_t inCursor) override;

private:
    std::string const mPrompt;
    console::RemoteConsole mConsole;
};

/// The program of this name or process number. Throws `detached_error` if there is none, or more
/// than one.
console::ListeningProgram FindProgram(std::string const& inNameOrProcessId);

/// Prints a line for each program that listens: the number of its process, two blanks, its name.
void PrintPrograms();

} // namespace brindle::host
