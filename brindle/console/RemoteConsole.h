#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brindle::console {

/// A program of this user that listens (brindle/console/Listen.h).
struct ListeningProgram {
    UTF16String name; ///< its first 60 bytes or so, if it is long
    std::uint32_t processId = 0;
};

/// Who listens now, in the order of their names. Empty where nobody can listen.
[[nodiscard]] BRN_API std::vector<ListeningProgram> ListeningPrograms();

/// Those whose name this is, or whose process has this number.
[[nodiscard]] BRN_API std::vector<ListeningProgram>
ListeningPrograms(UTF16String const& inNameOrProcessId);

/// What became of a line.
struct RemoteAnswer {
    enum class Outcome {
        kRan,         ///< the command ran
        kNoCommand,   ///< the program knows no such command
        kFailed,      ///< the command threw an exception, which `note` describes
        kRefused,     ///< the program did not run it; `note` says why
        kDisconnected ///< the program has ended, or has closed the connection; what became of the
                      ///< line is unknown
    };

    Outcome outcome = Outcome::kDisconnected;
    UTF8String output; ///< what the command wrote
    std::string note;  ///< a line of UTF-8 without control characters for the developer, or empty
};

/// A console that is attached to a program that listens. Its operations block until the program
/// answers. One thread at a time. Move-only; it is detached at destruction.
///
///     console::RemoteConsole remote(console::ListeningPrograms(u"Cutter"_utf16).at(0));
///     auto const answer = remote.ExecuteCommand(u"trace.set decoder 7"_utf16);
class BRN_API RemoteConsole {
public:
    /// Attaches, and waits at most five seconds for the program to accept.
    explicit RemoteConsole(ListeningProgram const& inProgram);
    RemoteConsole(RemoteConsole&& inOther) noexcept;
    RemoteConsole& operator=(RemoteConsole&& inOther) noexcept;
    ~RemoteConsole();

    [[nodiscard]] bool IsAttached() const noexcept;
    /// Why it could not be attached, in a sentence for a developer; otherwise empty.
    [[nodiscard]] std::string const& Failure() const noexcept;

    /// Has the program run the line, which holds no line feed: one becomes a blank.
    RemoteAnswer ExecuteCommand(UTF16String const& inLine);

    /// The lines that the program offers for this beginning of one; empty if it offers none.
    [[nodiscard]] std::vector<UTF16String> Complete(UTF16String const& inLine);

private:
    class Connection;

    std::unique_ptr<Connection> mConnection;
};

} // namespace brindle::console
