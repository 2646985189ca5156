#include "utility/src/memory/ThreadStock.h"

#include "platform/AlignedMemory.h"
#include "platform/Threads.h"
#include "utility/src/memory/Managers.h"

#include <algorithm>
#include <new>
#include <utility>

namespace brindle::utility {

ThreadStock ThreadStock::S_notMade;
ThreadStock ThreadStock::S_ended;
__thread ThreadStock* ThreadStock::t_mineP = &ThreadStock::S_notMade;

namespace {

/// Gives the blocks back and frees the magazine; null does nothing.
void Empty(std::size_t inClass, Magazine* inMagazine) noexcept {
    if (inMagazine != nullptr) {
        Managers::Of(inClass).DisposeSeveral(inMagazine->blocks.data(), inMagazine->count);
        Magazine::Free(inMagazine);
    }
}

} // namespace

/// Returns a thread's stock at the end of the thread. What the thread still frees or allocates
/// after that goes to the managers.
void ThreadStock::EndThread(void* inStock) noexcept {
    t_mineP = &S_ended;
    static_cast<ThreadStock*>(inStock)->Release();
    platform::FreeAligned(inStock);
}

/// Null if the thread is ending, or without memory.
ThreadStock* ThreadStock::MineOrMade() noexcept {
    // Not the destructor of a thread-local object: that would never be called for a thread whose
    // first call is made while it ends.
    static platform::ThreadEnd S_threadEnd(&EndThread);
    if (t_mineP == &S_notMade) {
        void* const memory = platform::AllocateAligned(sizeof(ThreadStock), alignof(ThreadStock));
        if (memory == nullptr) {
            return nullptr;
        }
        auto* const stock = new (memory) ThreadStock;
        if (!S_threadEnd.Call(stock)) {
            platform::FreeAligned(stock);
            return nullptr;
        }
        t_mineP = stock;
    }
    return t_mineP != &S_ended ? t_mineP : nullptr;
}

void* ThreadStock::TakeSlowly(std::size_t inClass) {
    ThreadStock* const mine = MineOrMade();
    void* block = nullptr;
    if (mine != nullptr && FindBlocks(inClass, mine->mSlots[inClass]) &&
        mine->Take(inClass, block)) {
        return block;
    }
    return Managers::Of(inClass).Allocate(0);
}

void ThreadStock::GiveSlowly(std::size_t inClass, void* inBlock) noexcept {
    ThreadStock* const mine = MineOrMade();
    bool const isTaken =
        mine != nullptr && FindRoom(inClass, mine->mSlots[inClass]) && mine->Give(inClass, inBlock);
    if (!isTaken) {
        Managers::Of(inClass).DisposeSeveral(&inBlock, 1);
    }
}

void ThreadStock::Slot::Load(Magazine* inMagazine, std::uint32_t inCapacity) noexcept {
    inHand = inMagazine;
    bottom = inMagazine->blocks.data();
    top = bottom + inMagazine->count;
    limit = bottom + inCapacity;
    last = last == kTakesNone ? 0 : last;
}

/// Updates the count of the magazine in hand and returns it; null if there is none.
Magazine* ThreadStock::Slot::Unload() noexcept {
    if (inHand != nullptr) {
        inHand->count = static_cast<std::uint32_t>(top - bottom);
    }
    return inHand;
}

/// Gets blocks in hand; there are none. Returns false without memory for a magazine.
bool ThreadStock::FindBlocks(std::size_t inClass, Slot& ioSlot) {
    std::uint32_t const capacity = MagazineCapacity(SizeClasses::kBlockSizes[inClass]);
    Magazine* empty = ioSlot.Unload();
    if (ioSlot.spare != nullptr && ioSlot.spare->count != 0) {
        ioSlot.Load(std::exchange(ioSlot.spare, empty), capacity);
        return true;
    }
    if (empty == nullptr) {
        empty = Magazine::Make();
        if (empty == nullptr) {
            return false;
        }
        ioSlot.Load(empty, capacity);
    }
    if (Magazine* const full = Managers::DepotOf(inClass).ExchangeEmpty(empty)) {
        ioSlot.Load(full, capacity);
        return true;
    }
    std::uint32_t const count = Managers::Of(inClass).AllocateSeveral(ioSlot.bottom, ioSlot.refill);
    std::reverse(ioSlot.bottom, ioSlot.bottom + count);
    ioSlot.top = ioSlot.bottom + count;
    // Grows with use, so that a thread with few requests holds few blocks.
    ioSlot.refill = std::min(2 * ioSlot.refill, capacity);
    return true;
}

/// Gets room in hand; there is none. Returns false without memory for a magazine.
bool ThreadStock::FindRoom(std::size_t inClass, Slot& ioSlot) noexcept {
    Magazine* empty = ioSlot.spare;
    if (empty != nullptr && empty->count != 0) {
        Magazine* const full = std::exchange(empty, nullptr);
        if (!Managers::DepotOf(inClass).ExchangeFull(full, empty)) {
            Managers::Of(inClass).DisposeSeveral(full->blocks.data(), full->count);
            full->count = 0;
            empty = full;
        }
    }
    ioSlot.spare = empty != nullptr ? empty : Magazine::Make();
    if (ioSlot.spare == nullptr) {
        return false;
    }
    Magazine* const full = ioSlot.Unload();
    ioSlot.Load(std::exchange(ioSlot.spare, full),
                MagazineCapacity(SizeClasses::kBlockSizes[inClass]));
    return true;
}

void ThreadStock::Release() noexcept {
    for (std::size_t i = 0; i < mSlots.size(); ++i) {
        Slot slot = std::exchange(mSlots[i], Slot{});
        Empty(i, slot.Unload());
        Empty(i, slot.spare);
        if (slot.last > kTakesNone) {
            void* const last = reinterpret_cast<void*>(slot.last);
            Managers::Of(i).DisposeSeveral(&last, 1);
        }
    }
}

void ThreadStock::ReleaseAll() noexcept {
    if (t_mineP != &S_notMade && t_mineP != &S_ended) {
        t_mineP->Release();
    }
    for (std::size_t i = 0; i < SizeClasses::kStocked; ++i) {
        for (Magazine* magazine = Managers::DepotOf(i).TakeAll(); magazine != nullptr;) {
            Empty(i, std::exchange(magazine, magazine->next));
        }
    }
}

} // namespace brindle::utility
