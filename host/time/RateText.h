#pragma once

#include <brindle/time/FrameRate.h>

#include <string>

namespace brindle::host {

/// The rate that a text tells in frames a second: a number such as 25 or 12.5, or a fraction such
/// as 30000/1001. A number that has no whole number of ticks in its frame is the NTSC rate,
/// 1000/1001 of a whole one, of which it is the rounded form: 29.97, 23.976, 23.98. Throws
/// `usage_error` for any other text.
time::FrameRate RateFromText(std::string const& inText);

} // namespace brindle::host
