#pragma once

#include "threads/src/executors/AllocatedFunction.h"
#include "utility/src/base/Mutex.h"

#include <boost/noncopyable.hpp>

#include <unordered_map>

namespace brindle::threads {

/// Owns the items that are to run later, each under a key: the address of the message that will
/// fetch it. So the items can be released while the messages are still on their way. Any thread may
/// call; no item is released or run while the mutex is held.
class DelayedItems : boost::noncopyable {
public:
    using Key = void const*;

    /// Takes the item, unless it throws `std::bad_alloc`.
    void Add(Key inKey, AllocatedFunction::Pointer& ioItem);
    /// Null if the item was taken or released before.
    [[nodiscard]] AllocatedFunction::Pointer Take(Key inKey) noexcept;
    void Clear() noexcept;

private:
    using Items = std::unordered_map<Key, AllocatedFunction::Pointer>;

    utility::Mutex mMutex;
    Items mItems BRN_GUARDED_BY(mMutex);
};

} // namespace brindle::threads
