#include "host/time/RateText.h"

#include "host/commandline/Arguments.h"

#include <brindle/time/FrameRateNames.h>

namespace brindle::host {

time::FrameRate RateFromText(std::string const& inText) {
    auto const rate = time::FrameRate::FromName(inText);
    if (!rate) {
        throw usage_error(
            "--rate takes frames a second, such as 25, 29.97 or 30000/1001, that last "
            "whole ticks, not '" +
            inText + "'");
    }
    return *rate;
}

} // namespace brindle::host
