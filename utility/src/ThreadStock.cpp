#include "utility/src/ThreadStock.h"

#include "platform/AlignedMemory.h"
#include "utility/src/Managers.h"

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

/// Gives a thread's stock back when the thread ends.
class ThreadStock::Keeper {
public:
    Keeper() = default;
    Keeper(Keeper const&) = delete;
    Keeper& operator=(Keeper const&) = delete;
    ~Keeper() {
        // What the thread still does after this goes to the managers.
        ThreadStock* const mine = std::exchange(t_mineP, &S_ended);
        mine->Release();
        platform::FreeAligned(mine);
    }
};

/// Null if the thread is at its end, or there is no memory.
ThreadStock* ThreadStock::MineOrMade() noexcept {
    if (t_mineP == &S_notMade) {
        void* const memory = platform::AllocateAligned(sizeof(ThreadStock), alignof(ThreadStock));
        if (memory == nullptr) {
            return nullptr;
        }
        t_mineP = new (memory) ThreadStock;
        static thread_local Keeper const t_keeper;
        static_cast<void>(t_keeper);
    }
    return t_mineP != &S_ended ? t_mineP : nullptr;
}

void* ThreadStock::TakeSlowly(std::size_t inClass) {
    ThreadStock* const mine = MineOrMade();
    if (mine == nullptr || !FindBlocks(inClass, mine->mSlots[inClass])) {
        return Managers::Of(inClass).Allocate(0);
    }
    return mine->Take(inClass);
}

void ThreadStock::GiveSlowly(std::size_t inClass, void* inBlock) noexcept {
    ThreadStock* const mine = MineOrMade();
    if (mine == nullptr || !FindRoom(inClass, mine->mSlots[inClass])) {
        Managers::Of(inClass).DisposeSeveral(&inBlock, 1);
    } else {
        mine->Give(inClass, inBlock);
    }
}

/// Puts what is in hand away as the spare. False if there is no magazine to take.
bool ThreadStock::TakeInHand(std::size_t inClass, Slot& ioSlot, Magazine* inMagazine) noexcept {
    if (inMagazine == nullptr) {
        return false;
    }
    if (ioSlot.inHand != nullptr) {
        ioSlot.inHand->count = static_cast<std::uint32_t>(ioSlot.top - ioSlot.bottom);
    }
    ioSlot.spare = std::exchange(ioSlot.inHand, inMagazine);
    ioSlot.bottom = inMagazine->blocks.data();
    ioSlot.top = ioSlot.bottom + inMagazine->count;
    ioSlot.limit = ioSlot.bottom + MagazineCapacity(SizeClasses::kBlockSizes[inClass]);
    return true;
}

/// Sees to it that there is a block in hand, where there is none. False without memory for it.
bool ThreadStock::FindBlocks(std::size_t inClass, Slot& ioSlot) {
    if (ioSlot.spare != nullptr && ioSlot.spare->count != 0) {
        return TakeInHand(inClass, ioSlot, ioSlot.spare);
    }
    if (ioSlot.inHand == nullptr && !TakeInHand(inClass, ioSlot, Magazine::Make())) {
        return false;
    }
    ioSlot.inHand->count = 0;
    if (Magazine* const full = Managers::DepotOf(inClass).ExchangeEmpty(ioSlot.inHand)) {
        Magazine* const spare = ioSlot.spare;
        TakeInHand(inClass, ioSlot, full);
        ioSlot.spare = spare;
        return true;
    }
    std::uint32_t const count = Managers::Of(inClass).AllocateSeveral(ioSlot.bottom, ioSlot.refill);
    std::reverse(ioSlot.bottom, ioSlot.bottom + count);
    ioSlot.top = ioSlot.bottom + count;
    auto const capacity = static_cast<std::uint32_t>(ioSlot.limit - ioSlot.bottom);
    // A thread that asks for little takes little from others.
    ioSlot.refill = std::min(2 * ioSlot.refill, capacity);
    return true;
}

/// Sees to it that there is room in hand, where there is none. False without memory for it.
bool ThreadStock::FindRoom(std::size_t inClass, Slot& ioSlot) noexcept {
    if (ioSlot.spare != nullptr && ioSlot.spare->count != 0) {
        Magazine* empty = nullptr;
        if (Managers::DepotOf(inClass).ExchangeFull(ioSlot.spare, empty)) {
            ioSlot.spare = empty;
        } else {
            Managers::Of(inClass).DisposeSeveral(ioSlot.spare->blocks.data(), ioSlot.spare->count);
            ioSlot.spare->count = 0;
        }
    }
    return TakeInHand(inClass, ioSlot, ioSlot.spare != nullptr ? ioSlot.spare : Magazine::Make());
}

void ThreadStock::Release() noexcept {
    for (std::size_t i = 0; i < mSlots.size(); ++i) {
        Slot const slot = std::exchange(mSlots[i], Slot{});
        if (slot.inHand != nullptr) {
            slot.inHand->count = static_cast<std::uint32_t>(slot.top - slot.bottom);
        }
        for (Magazine* const magazine : {slot.inHand, slot.spare}) {
            Empty(i, magazine);
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
