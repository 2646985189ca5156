#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brindle::host {

// Ticks as a decimal number of some unit, such as the second or a frame. `inTicksPerUnit` is from 1
// to 10 to the 17th.

/// No more decimals than it takes for `TicksFromDecimal` to give the same ticks back.
std::string DecimalFromTicks(std::int64_t inTicks, std::int64_t inTicksPerUnit);

/// The nearest tick; decimals beyond the eighteenth do not count. Nothing if the text is not digits
/// with or without a sign "-" and a point, or does not fit.
std::optional<std::int64_t> TicksFromDecimal(std::string_view inText, std::int64_t inTicksPerUnit);

} // namespace brindle::host
