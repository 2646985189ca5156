#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brindle::host {

// Converts between ticks and decimal numbers of a longer unit, such as a second or a frame.
// `inTicksPerUnit` is from 1 to 10^17.

/// Writes as few decimals as `TicksFromDecimal` needs to return the same ticks.
std::string DecimalFromTicks(std::int64_t inTicks, std::int64_t inTicksPerUnit);

/// Rounds to the nearest tick; decimals beyond the eighteenth are ignored. Empty if the text is
/// anything but digits with an optional "-" and an optional point, or does not fit.
std::optional<std::int64_t> TicksFromDecimal(std::string_view inText, std::int64_t inTicksPerUnit);

} // namespace brindle::host
