#include "threads/src/executors/DelayedItems.h"

#include <utility>

namespace brindle::threads {

void DelayedItems::Add(Key inKey, AllocatedFunction::Pointer& ioItem) {
    utility::MutexLock const lock(mMutex);
    mItems[inKey] = std::move(ioItem);
}

AllocatedFunction::Pointer DelayedItems::Take(Key inKey) noexcept {
    utility::MutexLock const lock(mMutex);
    auto const found = mItems.find(inKey);
    if (found == mItems.end()) {
        return nullptr;
    }
    AllocatedFunction::Pointer item = std::move(found->second);
    mItems.erase(found);
    return item;
}

void DelayedItems::Clear() noexcept {
    Items items;
    {
        utility::MutexLock const lock(mMutex);
        items.swap(mItems);
    }
}

} // namespace brindle::threads
