#pragma once

#include <cstdint>
#include <ctime>

namespace brindle::platform {

/// Milliseconds since the machine was started, also while it was suspended, modulo 2^32. Nobody
/// sets this clock.
std::uint32_t TickCount() noexcept;

/// The time of the system's clock in the user's time zone. Any thread may call.
std::tm LocalTime() noexcept;

} // namespace brindle::platform
