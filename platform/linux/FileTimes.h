#pragma once

#include <cstdint>
#include <ctime>

namespace brindle::platform {

/// 100-nanosecond ticks since the start of 1601 UTC; a time beyond their range is the nearest end.
std::uint64_t TicksOf(std::int64_t inSeconds, std::uint32_t inNanoseconds) noexcept;

timespec TimeOf(std::uint64_t inTicks) noexcept;

} // namespace brindle::platform
