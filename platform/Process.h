#pragma once

#include <cstdint>

namespace brindle::platform {

std::uint32_t ProcessId() noexcept;
std::uint32_t ThreadId() noexcept; ///< unique among the threads that run now

/// The handle of the loaded module that holds `inAddress`, null if none does. Touches no file.
void* ModuleOf(void const* inAddress) noexcept;

/// Executes the processor's breakpoint instruction: ends the process unless a debugger is attached.
void BreakIntoDebugger() noexcept;

} // namespace brindle::platform
