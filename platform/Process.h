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

/// Executes the processor's breakpoint instruction, which ends the process unless a debugger is
/// attached.
void BreakIntoDebugger() noexcept;

} // namespace brindle::platform
