#pragma once

#include "threads/src/executors/AllocatedFunction.h"

#include <boost/noncopyable.hpp>
#include <boost/thread/mutex.hpp>

#include <unordered_map>

namespace brindle::threads {

/// The items that are to be run later, each under the address of what will come for it: so they can
/// be released at any time, wherever that is on its way. Any thread may call; no item is released
/// or run under the lock.
class DelayedItems : boost::noncopyable {
public:
    using Key = void const*;

    /// Takes the item, unless it throws `std::bad_alloc`.
    void Add(Key inKey, AllocatedFunction::Pointer& ioItem);
    /// Null if the item has been taken or released.
    AllocatedFunction::Pointer Take(Key inKey) noexcept;
    void Clear() noexcept;

private:
    boost::mutex mMutex;
    std::unordered_map<Key, AllocatedFunction::Pointer> mItems;
};

} // namespace brindle::threads
