#include "host/time/TickDecimals.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace brindle::host {

namespace {

constexpr std::size_t kMostDecimals = 18;

bool AreDigits(std::string_view inText) {
    return inText.find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace

std::string DecimalFromTicks(std::int64_t inTicks, std::int64_t inTicksPerUnit) {
    auto const unit = static_cast<std::uint64_t>(inTicksPerUnit);
    std::uint64_t const distance =
        inTicks < 0 ? 0 - static_cast<std::uint64_t>(inTicks) : static_cast<std::uint64_t>(inTicks);
    std::string text = (inTicks < 0 ? "-" : "") + std::to_string(distance / unit);
    // The digits so far fall short by rest / scale ticks; less than half a tick is rounded away.
    std::uint64_t rest = distance % unit;
    std::uint64_t scale = 1;
    while (2 * rest >= scale) {
        if (scale == 1) {
            text += '.';
        }
        text += static_cast<char>('0' + rest * 10 / unit);
        rest = rest * 10 % unit;
        scale *= 10;
    }
    return text;
}

std::optional<std::int64_t> TicksFromDecimal(std::string_view inText, std::int64_t inTicksPerUnit) {
    bool const isNegative = !inText.empty() && inText.front() == '-';
    inText.remove_prefix(isNegative ? 1 : 0);
    std::size_t const point = std::min(inText.find('.'), inText.size());
    std::string_view const wholeText = inText.substr(0, point);
    std::string_view const decimals = inText.substr(std::min(point + 1, inText.size()));
    if (!AreDigits(wholeText) || !AreDigits(decimals) || wholeText.size() + decimals.size() == 0) {
        return std::nullopt;
    }

    auto const unit = static_cast<std::uint64_t>(inTicksPerUnit);
    std::uint64_t ticks = 0;
    std::uint64_t rest = 0; // the decimals read so far amount to ticks + rest / scale
    std::uint64_t scale = 1;
    for (char const digit : decimals.substr(0, kMostDecimals)) {
        scale *= 10;
        rest = rest * 10 + static_cast<std::uint64_t>(digit - '0') * unit;
        ticks += rest / scale;
        rest %= scale;
    }
    ticks += 2 * rest >= scale ? 1 : 0;

    std::uint64_t whole = 0;
    auto const result = std::from_chars(wholeText.data(), wholeText.data() + point, whole);
    std::uint64_t const most =
        static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) + isNegative;
    if (result.ec == std::errc::result_out_of_range || whole > (most - ticks) / unit) {
        return std::nullopt;
    }
    ticks += whole * unit;
    return static_cast<std::int64_t>(isNegative ? 0 - ticks : ticks);
}

} // namespace brindle::host
