#pragma once

#include <brindle/time/TickTime.h>

#include <optional>

namespace brindle::time {

/// The sum, or nothing if it does not fit into 64 bits.
[[nodiscard]] constexpr std::optional<TickTime> CheckedSum(TickTime const& inLHS,
                                                           TickTime const& inRHS) noexcept {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(inLHS.GetTicks(), inRHS.GetTicks(), &sum)) {
        return std::nullopt;
    }
    return TickTime::TicksToTickTime(sum);
}

} // namespace brindle::time
