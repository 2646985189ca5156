#include "platform/SleepOnWord.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

namespace brindle::platform {

bool SleepOnWord(std::uint32_t* inWord, std::uint32_t inValue, std::uint32_t inMask,
                 Deadline const& inDeadline) noexcept {
    timespec time{};
    if (inDeadline.has_value()) {
        // The standard library's steady clock is CLOCK_MONOTONIC, by which this operation waits.
        std::chrono::nanoseconds const since = inDeadline->time_since_epoch();
        time.tv_sec = static_cast<time_t>(since.count() / 1'000'000'000);
        time.tv_nsec = static_cast<long>(since.count() % 1'000'000'000);
    }
    return ::syscall(SYS_futex, inWord, FUTEX_WAIT_BITSET_PRIVATE, inValue,
                     inDeadline.has_value() ? &time : nullptr, nullptr, inMask) == 0 ||
           errno != ETIMEDOUT;
}

bool WakeOnWord(std::uint32_t* inWord, std::uint32_t inMask) noexcept {
    return ::syscall(SYS_futex, inWord, FUTEX_WAKE_BITSET_PRIVATE, 1, nullptr, nullptr, inMask) > 0;
}

} // namespace brindle::platform
