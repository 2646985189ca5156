#include "platform/Clock.h"

namespace brindle::platform {

std::uint32_t TickCount() noexcept {
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint32_t>(now.tv_sec) * 1000U +
           static_cast<std::uint32_t>(now.tv_nsec / 1000000);
}

std::tm LocalTime() noexcept {
    std::tm parts{};
    std::time_t const now = std::time(nullptr);
    ::localtime_r(&now, &parts);
    return parts;
}

} // namespace brindle::platform
