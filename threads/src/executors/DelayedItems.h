#pragma once

#include "threads/src/executors/AllocatedFunction.h"
#include "utility/src/base/Mutex.h"

#include <boost/noncopyable.hpp>

#include <cstdint>
#include <unordered_map>

namespace brindle::threads {

/// Owns the items that are to run later. The messages that fetch them know only their numbers, so
/// the items can be released while the messages are still on their way, and a message that is
/// released does not release its item. Any thread may call; no item is released or run while the
/// mutex is held.
class DelayedItems : boost::noncopyable {
public:
    using Number = std::uint64_t;

    /// Takes the item, unless it throws `std::bad_alloc`.
    [[nodiscard]] Number Add(AllocatedFunction::Pointer& ioItem);
    /// Null if the item was taken or released before.
    [[nodiscard]] AllocatedFunction::Pointer Take(Number inNumber) noexcept;
    void Clear() noexcept;

private:
    using Items = std::unordered_map<Number, AllocatedFunction::Pointer>;

    utility::Mutex mMutex;
    Items mItems BRN_GUARDED_BY(mMutex);
    Number mNextNumber BRN_GUARDED_BY(mMutex) = 0;
};

} // namespace brindle::threads
