#include "utility/src/memory/RegionStore.h"

#include "platform/AlignedMemory.h"

#include <utility>

namespace brindle::utility {

namespace {

using StoreLock = threads::FreezableMutexLock;

} // namespace

std::atomic<RegionStore::Mark*> RegionStore::S_leaves[];
std::atomic<Region*> RegionStore::S_known[];

Region* RegionStore::Allocate() noexcept {
    {
        StoreLock const lock(mMutex);
        if (Region* const kept = mKept) {
            mKept = kept->nextInStore;
            --mKeptCount;
            return kept;
        }
    }
    void* const pages = platform::AllocatePages(Region::kSize, Region::kSize);
    auto const address = reinterpret_cast<std::uintptr_t>(pages);
    if (pages == nullptr) {
        return nullptr;
    }
    Mark* const marks = MarksFor(address);
    if (marks == nullptr) {
        static_cast<void>(platform::FreePages(pages, Region::kSize));
        return nullptr;
    }
    marks[address >> 20 & (kMarks - 1)].store(true, std::memory_order_relaxed);
    Region& region = Region::Of(pages);
    KnownAt(pages).store(&region, std::memory_order_relaxed);
    return &region;
}

void RegionStore::Free(Region& inRegion) noexcept {
    {
        StoreLock const lock(mMutex);
        if (mKeptCount < kKeptAtMost) {
            inRegion.nextInStore = std::exchange(mKept, &inRegion);
            ++mKeptCount;
            return;
        }
    }
    Unmap(inRegion);
}

void RegionStore::ReleaseAll() noexcept {
    Region* kept = nullptr;
    {
        StoreLock const lock(mMutex);
        kept = std::exchange(mKept, nullptr);
        mKeptCount = 0;
    }
    while (kept != nullptr) {
        Unmap(*std::exchange(kept, kept->nextInStore));
    }
}

std::size_t RegionStore::Kept() {
    StoreLock const lock(mMutex);
    return mKeptCount * Region::kSize;
}

void RegionStore::Unmap(Region& inRegion) noexcept {
    std::byte* const begin = inRegion.Begin();
    auto const address = reinterpret_cast<std::uintptr_t>(begin);
    Mark& mark = MarksFor(address)[address >> 20 & (kMarks - 1)];
    // Before the pages are unmapped, as the system may reuse the addresses at once. If it cannot
    // unmap them, it takes their memory, and the addresses stay unused.
    mark.store(false, std::memory_order_relaxed);
    Region* known = &inRegion;
    KnownAt(begin).compare_exchange_strong(known, nullptr, std::memory_order_relaxed);
    static_cast<void>(platform::FreePages(begin, Region::kSize));
}

/// The leaf of marks for an address, allocated if there is none; null without memory.
RegionStore::Mark* RegionStore::MarksFor(std::uintptr_t inAddress) noexcept {
    if (inAddress >> kLeafShift >= kLeaves) {
        return nullptr;
    }
    std::atomic<Mark*>& leaf = S_leaves[inAddress >> kLeafShift];
    Mark* marks = leaf.load(std::memory_order_acquire);
    if (marks != nullptr) {
        return marks;
    }
    constexpr std::size_t kBytes = kMarks * sizeof(Mark);
    void* const pages = platform::AllocatePages(kBytes, 4096);
    if (pages == nullptr) {
        return nullptr;
    }
    // The pages are zero, so every mark is false. If another thread has published its leaf in the
    // meantime, this one is freed.
    auto* const made = static_cast<Mark*>(pages);
    if (leaf.compare_exchange_strong(marks, made, std::memory_order_acq_rel,
                                     std::memory_order_acquire)) {
        return made;
    }
    static_cast<void>(platform::FreePages(pages, kBytes));
    return marks;
}

} // namespace brindle::utility
