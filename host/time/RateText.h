#pragma once

#include <brindle/time/FrameRate.h>

#include <string>

namespace brindle::host {

/// Reads a rate in frames a second: a number such as 25 or 12.5, or a fraction such as 30000/1001.
/// A number whose frames would not last a whole number of ticks is taken for a rounded NTSC rate,
/// 1000/1001 of a whole number: 29.97, 23.976 or 23.98. Throws `usage_error` for any other text.
time::FrameRate RateFromText(std::string const& inText);

} // namespace brindle::host
