#pragma once

#include <atomic>
#include <cstdint>

namespace brindle::platform {

/// How many processors this process may run on, at least 1.
std::uint32_t ProcessorCount() noexcept;

/// Sets the priority of the calling thread: -15 for idle, otherwise -2 to 2, where 0 is normal. If
/// the user has no right to the priority, the thread keeps the one that it has.
void SetThreadPriority(std::int32_t inPriority) noexcept;

/// Whether the calling thread has a lower priority than normal, which threads that it starts
/// inherit.
bool IsThreadBelowNormal() noexcept;

/// Has a function called at the end of each thread that asks for it. Objects of this class are
/// static, and never destroyed.
class ThreadEnd {
public:
    constexpr explicit ThreadEnd(void (*inFunction)(void*)) noexcept : mFunction(inFunction) {}

    /// Has the function called with this argument, which is not null, when the calling thread ends:
    /// after the destructors of its thread-local objects. A thread may still ask for it while it
    /// ends. The function is not called for the main thread if that ends by the end of the process.
    /// False if the system has no resources for it.
    [[nodiscard]] bool Call(void* inArgument) noexcept;

private:
    static constexpr std::int64_t kNoKey = -1;

    void (*const mFunction)(void*);
    std::atomic<std::int64_t> mKey{kNoKey};
};

} // namespace brindle::platform
