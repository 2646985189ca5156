#pragma once

#include <brindle/Export.h>
#include <brindle/console/Command.h>
#include <brindle/utility/TextTypes.h>

/// The commands that the console knows, by their names. Names that differ only in the case of ASCII
/// letters are the same name. Any thread may call, and so may commands while they run, and static
/// objects before `main` and after it.
namespace brindle::console::CommandRegistry {

/// Creates a command of this name and help, which the registry then owns.
using Factory = Command* (*)(UTF16String const& inName, UTF16String const& inHelp);

/// Adds a command. If the name is taken, nothing changes. The factory is called when the command is
/// executed for the first time, without a lock; of several objects that threads create at the same
/// time one is kept. A command whose factory returns null cannot be executed, and the next attempt
/// calls the factory again. Contract: the factory is not null.
BRN_API void RegisterCommand(UTF16String const& inName, UTF16String const& inHelp,
                             Factory inFactory);

/// Removes a command that was executed before, and returns the object, which the caller then owns.
/// Returns null if there is no such command; if it was never executed, which leaves it registered;
/// and if it is being executed, by this thread or another one: it is removed then, and the registry
/// destroys the object when the last execution has ended.
[[nodiscard]] BRN_API Command* UnregisterCommand(UTF16String const& inName);

} // namespace brindle::console::CommandRegistry
