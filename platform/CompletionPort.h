#pragma once

#include <cstdint>
#include <memory>

namespace brindle::platform {

/// An unbounded queue of pointers, first in first out across all threads, that many threads post to
/// and many wait on. Any thread may call any operation; none may be under way when the port goes.
///
/// What a thread did before it posted is visible to the thread that receives the packet.
class CompletionPort {
public:
    /// Waits without limit.
    static constexpr std::uint32_t kForever = 0xFFFFFFFF;

    CompletionPort(); ///< throws `std::bad_alloc`
    CompletionPort(CompletionPort const&) = delete;
    CompletionPort& operator=(CompletionPort const&) = delete;
    /// Drops the packets that are left; what they point to is the poster's.
    ~CompletionPort();

    /// Appends a packet and sees to it that a waiting thread takes it. Never blocks. False, and
    /// nothing is appended, if there is no memory; but a null packet is never refused: then it
    /// comes once no other packet is left.
    bool Post(void* inPacket) noexcept;

    /// Removes the oldest packet; blocks for at most this time until there is one. False, and null,
    /// if none came. 0 only looks.
    bool Wait(void*& outPacket, std::uint32_t inMilliseconds) noexcept;

private:
    struct State;
    std::unique_ptr<State> mState;
};

} // namespace brindle::platform
