#pragma once

#include "platform/Deadline.h"

#include <memory>

namespace brindle::platform {

/// An unbounded queue of pointers ("packets"), first in first out across all threads, on which
/// threads block while it is empty. Any thread may call any operation; none may be in progress when
/// the port is destroyed.
///
/// What a thread did before it posted is visible to the thread that receives the packet.
class CompletionPort {
public:
    CompletionPort(); ///< throws `std::bad_alloc`
    CompletionPort(CompletionPort const&) = delete;
    CompletionPort& operator=(CompletionPort const&) = delete;
    /// Discards the packets that are left, and does not touch what they point to.
    ~CompletionPort();

    /// Appends a packet, and wakes a waiting thread if that is needed for the packet to be
    /// received. Never blocks. False, with nothing appended, if there is no memory. A null packet
    /// is never refused; without memory it is received once no other packet is left.
    [[nodiscard]] bool Post(void* inPacket) noexcept;

    /// Removes the oldest packet. False, and a null pointer, if there is none.
    bool Take(void*& outPacket) noexcept;
    /// Removes the oldest packet; blocks until there is one. False, and a null pointer, if there
    /// was none by the deadline.
    bool Wait(void*& outPacket, Deadline const& inDeadline = Deadline::Never()) noexcept;

private:
    struct State;
    std::unique_ptr<State> mState;
};

} // namespace brindle::platform
