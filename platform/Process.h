#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

#include <cstdint>
#include <string>

namespace brindle::platform {

std::uint32_t ProcessId() noexcept;
std::uint32_t ThreadId() noexcept; ///< unique among the threads that are running now

/// The path of the program that this process runs. If its file was removed or replaced meanwhile,
/// the path that it had. Error: 2 the system does not say.
Result<UTF16String> ExecutablePath();

/// The home directory that the system's database of accounts has for this user, in the system's
/// form. Error: 2 it has none.
Result<std::string> AccountHome();

/// The handle of the loaded module that contains `inAddress`; null if there is none. Touches no
/// file.
void* ModuleOf(void const* inAddress) noexcept;

/// The words with which the program was started, with a blank between them; a word that is empty or
/// holds a blank stands in quotation marks. Empty if the system does not say.
std::string CommandLine();

/// Raises SIGTRAP if a debugger is attached to the process, and returns once it goes on. Otherwise
/// returns false.
bool BreakIntoDebugger() noexcept;

/// Ends the process at once: nothing is flushed, and no destructor or exit handler runs.
[[noreturn]] void EndProcess(int inStatus) noexcept;

} // namespace brindle::platform
