#include "platform/SleepOnWord.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

namespace brindle::platform {

bool SleepOnWord(std::uint32_t* inWord, std::uint32_t inValue, std::uint32_t inMask,
                 Deadline const& inDeadline) noexcept {
    // The clocks of the standard library are CLOCK_REALTIME and CLOCK_MONOTONIC.
    int const operation =
        FUTEX_WAIT_BITSET_PRIVATE | (inDeadline.IsBySystemClock() ? FUTEX_CLOCK_REALTIME : 0);
    timespec time{};
    time.tv_sec = static_cast<time_t>(inDeadline.SinceEpoch().count() / 1'000'000'000);
    time.tv_nsec = static_cast<long>(inDeadline.SinceEpoch().count() % 1'000'000'000);
    return ::syscall(SYS_futex, inWord, operation, inValue, inDeadline.IsNever() ? nullptr : &time,
                     nullptr, inMask) == 0 ||
           errno != ETIMEDOUT;
}

bool WakeOnWord(std::uint32_t* inWord, std::uint32_t inMask) noexcept {
    return ::syscall(SYS_futex, inWord, FUTEX_WAKE_BITSET_PRIVATE, 1, nullptr, nullptr, inMask) > 0;
}

} // namespace brindle::platform
