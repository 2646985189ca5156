#include "platform/linux/FileTimes.h"

#include <limits>

namespace brindle::platform {

namespace {

constexpr std::int64_t kSecondsFrom1601To1970 = 11644473600;
constexpr std::uint64_t kTicksPerSecond = 10000000;

} // namespace

std::uint64_t TicksOf(std::int64_t inSeconds, std::uint32_t inNanoseconds) noexcept {
    constexpr std::int64_t kMostSeconds = static_cast<std::int64_t>(
        std::numeric_limits<std::uint64_t>::max() / kTicksPerSecond - kSecondsFrom1601To1970 - 1);
    if (inSeconds < -kSecondsFrom1601To1970) {
        return 0;
    }
    if (inSeconds > kMostSeconds) {
        return std::numeric_limits<std::uint64_t>::max();
    }
    return static_cast<std::uint64_t>(inSeconds + kSecondsFrom1601To1970) * kTicksPerSecond +
           inNanoseconds / 100;
}

timespec TimeOf(std::uint64_t inTicks) noexcept {
    timespec time{};
    time.tv_sec = static_cast<std::time_t>(inTicks / kTicksPerSecond) - kSecondsFrom1601To1970;
    time.tv_nsec = static_cast<long>(inTicks % kTicksPerSecond) * 100;
    return time;
}

} // namespace brindle::platform
