#pragma once

#include <cstdint>

namespace brindle::platform {

/// How many processors this process may run on, at least 1.
std::uint32_t ProcessorCount() noexcept;

/// Sets the priority of the calling thread: -15 idle, -2 to 2 about the normal 0. Where the system
/// does not let this user have the priority, the thread keeps the one it has.
void SetThreadPriority(std::int32_t inPriority) noexcept;

} // namespace brindle::platform
