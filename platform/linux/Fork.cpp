#include "platform/Fork.h"

#include <pthread.h>

#include <atomic>

namespace brindle::platform {

bool OnFork(void (*inPrepare)(), void (*inParent)(), void (*inChild)()) noexcept {
    return ::pthread_atfork(inPrepare, inParent, inChild) == 0;
}

std::uint32_t ForkCount() noexcept {
    static std::atomic<std::uint32_t> count{0};
    static bool const isCounting =
        OnFork(nullptr, nullptr, [] { count.fetch_add(1, std::memory_order_relaxed); });
    static_cast<void>(
        isCounting); // without memory for it, a child takes what it inherited for its own
    return count.load(std::memory_order_relaxed);
}

} // namespace brindle::platform
