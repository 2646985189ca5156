#pragma once

#include <brindle/Export.h>
#include <brindle/console/Completion.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brindle::console {

/// A program of this user that listens (brindle/console/Listen.h).
struct ListeningProgram {
    UTF16String name;            ///< cut if it is long
    std::uint32_t processId = 0; ///< as the system counts processes
};

/// Who listens now, in the order of their names. Empty where nobody can listen.
[[nodiscard]] BRN_API std::vector<ListeningProgram> ListeningPrograms();

/// Those whose name this is, or whose process has this number.
[[nodiscard]] BRN_API std::vector<ListeningProgram>
ListeningPrograms(UTF16String const& inNameOrProcessId);

/// What became of a line.
struct RemoteAnswer {
    /// What became of the line.
    enum class Outcome {
        kRan,         ///< the command ran
        kNoCommand,   ///< the program knows no such command
        kFailed,      ///< the command threw an exception, which `note` describes
        kRefused,     ///< the program did not run it; `note` says why
        kDisconnected ///< the program has ended, or has closed the connection; what became of the
                      ///< line is unknown
    };

    Outcome outcome = Outcome::kDisconnected; ///< what became of the line
    UTF8String output;                        ///< what the command wrote, with its own line ends
    std::string note; ///< a line of UTF-8 without control characters for the developer, or empty
};

/// A console that is attached to a program that listens. Its operations block until the program
/// answers. One thread at a time. Move-only; it is detached at destruction.
///
///     console::RemoteConsole remote(console::ListeningPrograms(u"Cutter"_utf16).at(0));
///     auto const answer = remote.ExecuteCommand("trace.set decoder 7"_utf8);
class BRN_API RemoteConsole {
public:
    /// Attaches, and waits at most five seconds for the program to accept.
    explicit RemoteConsole(ListeningProgram const& inProgram);
    /// Takes the connection; the source may then only be destroyed or assigned to.
    RemoteConsole(RemoteConsole&& inOther) noexcept;
    RemoteConsole& operator=(RemoteConsole&& inOther) noexcept;
    ~RemoteConsole();

    /// False once an operation has found that the program has ended or has closed the connection.
    [[nodiscard]] bool IsAttached() const noexcept;
    /// Why it could not be attached, in a phrase for a diagnostic; otherwise empty.
    [[nodiscard]] std::string const& Failure() const noexcept;

    /// Has the program execute the line, as `console::ExecuteCommand` does it there. A line feed in
    /// it becomes a blank.
    RemoteAnswer ExecuteCommand(UTF8String const& inLine);

    /// The help of the program's commands, as `console::ListCommands` writes it there.
    RemoteAnswer ListCommands();

    /// How the line may go on at the cursor in that program, as `console::CompleteLine` has it.
    [[nodiscard]] Completions CompleteLine(UTF8String const& inLine, std::size_t inCursor);

private:
    class Connection;

    std::unique_ptr<Connection> mConnection;
};

} // namespace brindle::console
