#pragma once

#include "host/lineedit/LineEditor.h"

#include <stdexcept>
#include <string>

namespace brindle::host {

/// A line cannot be executed; `what()` says why.
class line_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The program that executed the lines is not there any more.
class detached_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Where the lines of a console are executed.
class ConsoleTarget {
public:
    virtual ~ConsoleTarget() = default;

    /// What is shown before each line, in ASCII.
    virtual std::string Prompt() const = 0;

    /// Executes a line that is not empty and has no blanks around it, and prints what it writes.
    /// Throws `line_error` if it is no command, and an exception that describes the failure of the
    /// command.
    virtual void Execute(std::string const& inLine) = 0;
    /// Prints the help of all commands.
    virtual void ShowHelp() = 0;

    /// The commands and their arguments that the word at the cursor may be completed to.
    virtual LineCompletions Complete(std::string const& inLine, std::size_t inCursor) = 0;
};

/// The failure to find a command of this line.
inline line_error NoCommand(std::string const& inEscapedLine) {
    auto const name = inEscapedLine.substr(0, inEscapedLine.find(' '));
    return line_error("'" + name + "' is no command; 'help' lists them");
}

} // namespace brindle::host
