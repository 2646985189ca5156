#pragma once

#include <brindle/time/FrameRate.h>

#include <string>

namespace brindle::host {

/// `FrameRate::FromName`. Throws `usage_error` if the text names no rate.
time::FrameRate RateFromText(std::string const& inText);

} // namespace brindle::host
