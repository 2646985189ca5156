#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle::platform {

/// How many processors this process may run on, at least 1.
std::uint32_t ProcessorCount() noexcept;

/// Sets the priority of the calling thread: -15 for idle, otherwise -2 to 2, where 0 is normal. If
/// the user has no right to the priority, the thread keeps the one that it has.
void SetThreadPriority(std::int32_t inPriority) noexcept;

/// Keeps the signals of the process from the calling thread, and for good from the threads that it
/// starts meanwhile.
class SignalsBlocked {
public:
    SignalsBlocked() noexcept;
    SignalsBlocked(SignalsBlocked const&) = delete;
    SignalsBlocked& operator=(SignalsBlocked const&) = delete;
    ~SignalsBlocked();

private:
    static constexpr std::size_t kMostBytes = 128;

    alignas(std::max_align_t) std::byte mOldMask[kMostBytes]; // as the system has it
};

/// Whether the calling thread has a lower priority than normal, which threads that it starts
/// inherit.
bool IsThreadBelowNormal() noexcept;

} // namespace brindle::platform
