#include "threads/src/executors/DelayedItems.h"

#include <utility>

namespace brindle::threads {

DelayedItems::Number DelayedItems::Add(AllocatedFunction::Pointer& ioItem) {
    utility::MutexLock const lock(mMutex);
    mItems[mNextNumber] = std::move(ioItem);
    return mNextNumber++;
}

AllocatedFunction::Pointer DelayedItems::Take(Number inNumber) noexcept {
    utility::MutexLock const lock(mMutex);
    auto const found = mItems.find(inNumber);
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
