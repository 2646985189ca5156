#pragma once

#include <brindle/Export.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/TextTypes.h>

/// A developer's console that has no window: the host hands over lines of text, and gets the output
/// of the commands that they name:
///
///     console::Initialize();
///     if (!console::ExecuteCommand(u"trace.set decoder 7"_utf16, output)) { /* no command */ }
///
/// Clients add their own commands (CommandRegistry.h). Any thread may call.
namespace brindle::console {

/// Registers the built-in commands, which show and change the debug database (`debug.*`) and the
/// trace volumes (`trace.*`), and look at the file system (`filesupport.*`). A command of a client
/// that has one of their names already stays. From here on a developer who raises the category
/// "Executors" sees the exceptions that leave posted functions: `debug::TraceExecutorExceptions`.
BRN_API void Initialize();

/// Closes every `Listener` of the process (Listen.h), and removes the commands that `Initialize`
/// registered, also those that were never executed. What a thread is executing ends undisturbed.
/// They can be registered again.
BRN_API void Terminate();

/// Executes the command that the line names. The name ends at the first blank; the rest of the
/// line, without blanks and tabs around it, is the arguments. Returns false, and writes nothing, if
/// there is no such command, as on a line that is empty or begins with a blank. What the command
/// throws reaches the caller.
BRN_API bool ExecuteCommand(UTF16String const& inLine, UTF16OutputStream& ioOut);

/// Writes the help of all commands, in the order of their names. Lines end in CR LF, and the stream
/// is flushed at the end of each, as in the output of every built-in command.
BRN_API void ListCommands(UTF16OutputStream& ioOut);

} // namespace brindle::console
