#include "host/console/RemoteTarget.h"

#include "host/commandline/Diagnostics.h"
#include "host/commandline/EscapedText.h"
#include "host/commandline/PlainText.h"
#include "host/console/CommandOutput.h"
#include "host/console/CompletionText.h"

#include <brindle/utility/Streams.h>

#include <algorithm>

namespace brindle::host {

namespace {

using Outcome = console::RemoteAnswer::Outcome;

/// The name of the program, or its number if the name is not of ASCII.
std::string PromptFor(console::ListeningProgram const& inProgram) {
    auto const name = EscapedText(PlainText(inProgram.name));
    bool const isAscii =
        std::all_of(name.begin(), name.end(), [](char byte) { return byte >= ' ' && byte <= '~'; });
    return (isAscii ? name : std::to_string(inProgram.processId)) + "> ";
}

void Print(console::RemoteAnswer const& inAnswer) {
    CommandOutput buffer;
    UTF16OutputStream out(&buffer);
    out << utility::UTF8to16(inAnswer.output);
    out.flush();
    RequireOutput();
}

/// Prints the output, and throws what describes a failure.
void Show(console::RemoteAnswer const& inAnswer, std::string const& inLine) {
    Print(inAnswer);
    switch (inAnswer.outcome) {
    case Outcome::kRan:
        if (inAnswer.note.empty()) {
            return;
        }
        break;
    case Outcome::kNoCommand:
        throw NoCommand(EscapedText(inLine, ""));
    case Outcome::kFailed:
        break;
    case Outcome::kRefused:
        throw line_error(inAnswer.note);
    case Outcome::kDisconnected:
        throw detached_error("the program has ended, or has closed the connection");
    }
    throw std::runtime_error(inAnswer.note);
}

} // namespace

RemoteTarget::RemoteTarget(console::ListeningProgram const& inProgram)
    : mPrompt(PromptFor(inProgram)), mConsole(inProgram) {
    if (!mConsole.IsAttached()) {
        throw detached_error(mConsole.Failure());
    }
}

void RemoteTarget::Execute(std::string const& inLine) {
    Show(mConsole.ExecuteCommand(UTF8String(inLine.begin(), inLine.end())), inLine);
}

void RemoteTarget::ShowHelp() {
    Show(mConsole.ListCommands(), "help");
}

LineCompletions RemoteTarget::Complete(std::string const& inLine, std::size_t inCursor) {
    return CompletionText(
        mConsole.CompleteLine(UTF8String(inLine.begin(), inLine.end()), inCursor));
}

console::ListeningProgram FindProgram(std::string const& inNameOrProcessId) {
    auto const wanted =
        utility::UTF8to16(UTF8String(inNameOrProcessId.begin(), inNameOrProcessId.end()));
    auto const programs = console::ListeningPrograms(wanted);
    if (programs.empty()) {
        throw detached_error("nobody listens under this name; --list names who does");
    }
    if (programs.size() > 1) {
        std::string all;
        for (auto const& program : programs) {
            all += (all.empty() ? "" : ", ") + std::to_string(program.processId) + ' ' +
                   EscapedText(PlainText(program.name));
        }
        throw detached_error("more than one listens: " + all);
    }
    return programs[0];
}

void PrintPrograms() {
    for (auto const& program : console::ListeningPrograms()) {
        utility::streams::Out << program.processId << "  " << EscapedText(PlainText(program.name))
                              << '\n';
    }
}

} // namespace brindle::host
