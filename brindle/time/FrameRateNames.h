#pragma once

#include <brindle/Export.h>
#include <brindle/time/FrameRate.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::time {

/// The rate that people call so: a number of frames a second such as "25" or "12.5", or a fraction
/// such as "30000/1001". A number whose frames would not last a whole number of ticks is taken for
/// a rounded NTSC rate, 1000/1001 of a whole number: "29.97", "23.976", "23.98". Nothing for any
/// other text.
[[nodiscard]] BRN_API std::optional<FrameRate> FrameRateFromName(std::string_view inName);

/// The member of `FrameRate`, which calls `FrameRateFromName`.
template <typename Text>
auto FrameRate::FromName(Text const& inName) {
    return FrameRateFromName(inName);
}

/// A rate under its usual name, which `FrameRate::FromName` takes.
struct NamedFrameRate {
    std::string name; ///< such as "29.97"
    FrameRate rate;   ///< exact, whatever the name rounds
};

/// Compares all fields.
inline bool operator==(NamedFrameRate const& inLHS, NamedFrameRate const& inRHS) noexcept {
    return inLHS.name == inRHS.name && inLHS.rate == inRHS.rate;
}

inline bool operator!=(NamedFrameRate const& inLHS, NamedFrameRate const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

/// The rates of video, from the lowest to the highest, for a menu.
[[nodiscard]] BRN_API std::vector<NamedFrameRate> NamedFrameRates();

} // namespace brindle::time
