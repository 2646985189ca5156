#include "utility/src/memory/Depot.h"

#include "platform/AlignedMemory.h"

#include <new>
#include <utility>

namespace brindle::utility {

namespace {

constexpr std::size_t kCacheLine = 64;
constexpr std::uint32_t kBytesAtMost = 256 * 1024;

using threads::FreezableMutexLock;

void Push(Magazine*& ioTop, Magazine* inMagazine) noexcept {
    inMagazine->next = ioTop;
    ioTop = inMagazine;
}

Magazine* Pop(Magazine*& ioTop) noexcept {
    Magazine* const top = ioTop;
    if (top != nullptr) {
        ioTop = std::exchange(top->next, nullptr);
    }
    return top;
}

} // namespace

Magazine* Magazine::Make() noexcept {
    void* const memory = platform::AllocateAligned(sizeof(Magazine), kCacheLine);
    return memory != nullptr ? new (memory) Magazine : nullptr;
}

void Magazine::Free(Magazine* inMagazine) noexcept {
    platform::FreeAligned(inMagazine);
}

Depot::Depot(std::uint32_t inBlockSize)
    : mLimit(kBytesAtMost / (inBlockSize * MagazineCapacity(inBlockSize))) {}

Magazine* Depot::ExchangeEmpty(Magazine* inEmpty) noexcept {
    FreezableMutexLock const lock(mMutex);
    Magazine* const full = Pop(mFull);
    if (full != nullptr) {
        --mFullCount;
        Push(mEmpty, inEmpty);
    }
    return full;
}

bool Depot::ExchangeFull(Magazine* inFull, Magazine*& outEmpty) noexcept {
    FreezableMutexLock const lock(mMutex);
    if (mFullCount == mLimit) {
        return false;
    }
    ++mFullCount;
    Push(mFull, inFull);
    outEmpty = Pop(mEmpty);
    return true;
}

Magazine* Depot::TakeAll() noexcept {
    FreezableMutexLock const lock(mMutex);
    mFullCount = 0;
    while (Magazine* const full = Pop(mFull)) {
        Push(mEmpty, full);
    }
    return std::exchange(mEmpty, nullptr);
}

} // namespace brindle::utility
