#pragma once

#include "platform/CompletionPort.h"

#include <boost/noncopyable.hpp>

namespace brindle::threads {

/// Owned items, first in first out across all threads. Any thread may call any operation, and none
/// of them blocks.
template <typename Item>
class ThreadSafeQueue : boost::noncopyable {
public:
    using Pointer = typename Item::Pointer;

    ~ThreadSafeQueue() { Clear(); }

    /// Takes the item; false if there is no memory, and the item stays.
    bool Post(Pointer& ioItem) noexcept {
        if (!mPort.Post(ioItem.get())) {
            return false;
        }
        static_cast<void>(ioItem.release());
        return true;
    }

    /// The oldest item, or null.
    Pointer Take() noexcept {
        void* packet = nullptr;
        mPort.Wait(packet, 0);
        return Pointer(static_cast<Item*>(packet));
    }

    /// Releases the items that are left.
    void Clear() noexcept {
        while (Take() != nullptr) {
        }
    }

private:
    platform::CompletionPort mPort;
};

} // namespace brindle::threads
