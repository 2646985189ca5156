#pragma once

#include <brindle/Export.h>
#include <brindle/time/FrameRate.h>

#include <string>
#include <vector>

namespace brindle::time {

/// A rate under its usual name, which `FrameRate::FromName` takes.
struct NamedFrameRate {
    std::string name;
    FrameRate rate;
};

/// The rates of video, from the lowest to the highest, for a menu.
[[nodiscard]] BRN_API std::vector<NamedFrameRate> NamedFrameRates();

} // namespace brindle::time
