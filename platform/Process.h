#pragma once

#include <cstdint>

namespace brindle::platform {

std::uint32_t ProcessId() noexcept;
std::uint32_t ThreadId() noexcept; ///< unique among the threads that are running now

/// The handle of the loaded module that contains `inAddress`; null if there is none. Touches no
/// file.
void* ModuleOf(void const* inAddress) noexcept;

/// Executes the processor's breakpoint instruction, which ends the process unless a debugger is
/// attached.
void BreakIntoDebugger() noexcept;

} // namespace brindle::platform
