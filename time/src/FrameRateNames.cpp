#include <brindle/time/FrameRateNames.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <numeric>
#include <string>

namespace brindle::time {

namespace {

/// 1001 times a number of so many digits fits into 64 bits.
constexpr std::size_t kMostDigits = 16;
constexpr std::uint64_t kMostTicksPerFrame = 100'000'000'000'000'000;

struct Fraction {
    std::uint64_t numerator;
    std::uint64_t denominator;
};

std::optional<std::uint64_t> DigitsAsNumber(std::string_view inText) {
    std::uint64_t number = 0;
    char const* const last = inText.data() + inText.size();
    auto const [end, error] = std::from_chars(inText.data(), last, number);
    if (error != std::errc() || end != last || inText.size() > kMostDigits) {
        return std::nullopt;
    }
    return number;
}

std::optional<Fraction> DecimalAsFraction(std::string_view inText) {
    std::size_t const point = std::min(inText.find('.'), inText.size());
    std::string_view const decimals = inText.substr(std::min(point + 1, inText.size()));
    auto const number = DigitsAsNumber(std::string(inText.substr(0, point)).append(decimals));
    if (!number) {
        return std::nullopt;
    }
    Fraction fraction{*number, 1};
    for (std::size_t i = 0; i < decimals.size(); ++i) {
        fraction.denominator *= 10;
    }
    return fraction;
}

/// Empty if a frame does not last a whole number of ticks.
std::optional<FrameRate> ExactRate(Fraction const& inRate) {
    constexpr std::uint64_t kTicksPerSecond = time::kTicksPerSecond;
    if (inRate.numerator == 0) {
        return std::nullopt;
    }
    std::uint64_t const common = std::gcd(kTicksPerSecond, inRate.numerator);
    std::uint64_t const rest = inRate.numerator / common;
    std::uint64_t const factor = inRate.denominator / rest;
    if (factor == 0 || inRate.denominator % rest != 0 ||
        factor > kMostTicksPerFrame / (kTicksPerSecond / common)) {
        return std::nullopt;
    }
    return FrameRate::Create(static_cast<std::int64_t>(kTicksPerSecond / common * factor));
}

/// The NTSC rate that, rounded to as many decimals, is this number; empty if there is none.
std::optional<FrameRate> RoundedNtscRate(Fraction const& inRate) {
    auto const [number, unit] = inRate;
    std::uint64_t const nominal = number / unit + 1;
    std::uint64_t const lhs = 1001 * number;
    std::uint64_t const rhs = 1000 * nominal * unit;
    // Half a unit of the last decimal, times 1001.
    if ((lhs > rhs ? lhs - rhs : rhs - lhs) > 500) {
        return std::nullopt;
    }
    return ExactRate({1000 * nominal, 1001});
}

} // namespace

std::optional<FrameRate> FrameRateFromName(std::string_view inName) {
    std::size_t const slash = inName.find('/');
    if (slash != std::string_view::npos) {
        auto const numerator = DigitsAsNumber(inName.substr(0, slash));
        auto const denominator = DigitsAsNumber(inName.substr(slash + 1));
        return numerator && denominator ? ExactRate({*numerator, *denominator}) : std::nullopt;
    }
    auto const number = DecimalAsFraction(inName);
    if (!number) {
        return std::nullopt;
    }
    auto const rate = ExactRate(*number);
    return rate ? rate : RoundedNtscRate(*number);
}

std::vector<NamedFrameRate> NamedFrameRates() {
    return {{"10", kFrameRate_Video10},         {"12", kFrameRate_Video12},
            {"12.5", kFrameRate_Video12_5},     {"15", kFrameRate_Video15},
            {"23.976", kFrameRate_23976},       {"24", kFrameRate_Film24},
            {"25", kFrameRate_VideoPAL},        {"29.97", kFrameRate_VideoNTSC},
            {"30", kFrameRate_Video30},         {"50", kFrameRate_VideoPAL_HD},
            {"59.94", kFrameRate_VideoNTSC_HD}, {"60", kFrameRate_Video60},
            {"100", kFrameRate_Video100}};
}

} // namespace brindle::time
