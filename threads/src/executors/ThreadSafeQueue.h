#pragma once

#include "platform/portable/PacketQueue.h"
#include "utility/src/base/NoPause.h"

#include <boost/noncopyable.hpp>

namespace brindle::threads {

/// A queue that owns its items, first in first out across all threads. Any thread may call any
/// operation; none blocks.
template <typename Item>
class ThreadSafeQueue : boost::noncopyable {
public:
    using Pointer = typename Item::Pointer;

    ~ThreadSafeQueue() { Clear(); }

    /// Takes the item. False if there is no memory; the item then stays with the caller.
    [[nodiscard]] bool Post(Pointer& ioItem) noexcept {
        if (!mPackets.Append(ioItem.get())) {
            return false;
        }
        static_cast<void>(ioItem.release());
        return true;
    }

    /// The oldest item, or null.
    [[nodiscard]] Pointer Take() noexcept {
        void* packet = nullptr;
        mPackets.Take(packet);
        return Pointer(static_cast<Item*>(packet));
    }

    /// Releases the items that are left.
    void Clear() noexcept {
        while (Take() != nullptr) {
        }
    }

private:
    // Small, because each adaptor has such a queue. No thread sleeps at it, so it is not a whole
    // completion port.
    platform::PacketQueue<utility::NoPause, 64, 4> mPackets;
};

} // namespace brindle::threads
