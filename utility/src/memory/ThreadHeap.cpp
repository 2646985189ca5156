#include "utility/src/memory/ThreadHeap.h"

#include "utility/src/memory/RegionStore.h"

#include <new>
#include <utility>

namespace brindle::utility {

ThreadSlots ThreadSlots::S_notMade;
ThreadSlots ThreadSlots::S_ended;
__thread ThreadSlots* ThreadSlots::t_mineP = &ThreadSlots::S_notMade;

/// Has the lock for the owner as long as it lives.
class ThreadHeap::OwnerGuard {
public:
    explicit OwnerGuard(ThreadHeap& ioHeap) : mLock(ioHeap.mLock) { mLock.Lock(); }
    OwnerGuard(OwnerGuard const&) = delete;
    OwnerGuard& operator=(OwnerGuard const&) = delete;
    ~OwnerGuard() { mLock.Unlock(); }

private:
    BasicOwnerLock<NoPause>& mLock;
};

// Chunks

/// Makes a chunk the one that its class allocates from. Nothing is in the slot.
void ThreadHeap::Install(Chunk& ioChunk) {
    Slot& slot = slots[ioChunk.sizeClass];
    slot.origin = ioChunk.origin;
    slot.free = ioChunk.free;
    slot.bump = ioChunk.bump;
    slot.end = ioChunk.End();
    slot.blockSize = SizeClasses::kBlockSizes[ioChunk.sizeClass];
    slot.used.store(ioChunk.used.load(std::memory_order_relaxed), std::memory_order_relaxed);
    slot.chunk = &ioChunk;
    ioChunk.used.store(Chunk::kCountedInSlot, std::memory_order_relaxed);
    ioChunk.state = ChunkState::kCurrent;
}

/// Takes the chunk out of the slot. It then counts as full, whatever it is.
Chunk& ThreadHeap::Uninstall(std::size_t inClass) {
    Slot& slot = slots[inClass];
    Chunk& chunk = *slot.chunk;
    chunk.free = slot.free;
    chunk.bump = slot.bump;
    chunk.state = ChunkState::kFull;
    chunk.used.store(slot.Used(), std::memory_order_release);
    slot.chunk = nullptr;
    slot.origin = nullptr;
    slot.free = slot.bump = slot.end = 0;
    slot.used.store(0, std::memory_order_relaxed);
    return chunk;
}

/// Gives an empty chunk's memory back. Nobody knows any of its blocks, and it is in no inbox.
void ThreadHeap::Return(Chunk& ioChunk) {
    Slot& slot = slots[ioChunk.sizeClass];
    if (ioChunk.state == ChunkState::kAvailable) {
        slot.available.Remove(ioChunk);
    }
    slot.bytes -= SizeOf(ioChunk.kind);
    GiveMemory(ioChunk);
}

/// Sees to a chunk that is in no slot, after blocks of it were disposed of. False if it is empty
/// and cannot go yet, as it is in the inbox or on the way there.
bool ThreadHeap::Settle(Chunk& ioChunk) {
    if (ioChunk.state == ChunkState::kCurrent) {
        return true; // the slot asks when it needs blocks
    }
    RemoteFrees::State const remote = ioChunk.remote.Look();
    // No other thread has a block that it could push. The owner has none that it could be about to
    // dispose of.
    if (ioChunk.used.load(std::memory_order_acquire) == remote.count) {
        if (remote.isQueued) {
            return false;
        }
        Return(ioChunk);
    } else if (ioChunk.state == ChunkState::kFull) {
        ioChunk.state = ChunkState::kAvailable;
        slots[ioChunk.sizeClass].available.PushBack(ioChunk);
    }
    return true;
}

/// Sees to all chunks that other threads have disposed of blocks of.
void ThreadHeap::Drain(Who inWho) {
    mUnseen.store(0, std::memory_order_relaxed);
    while (Chunk* chunk = mInbox.TakeAll()) {
        while (chunk != nullptr) {
            Chunk& first = *std::exchange(chunk, chunk->nextInInbox);
            first.remote.ClearQueued();
            // A slot's chunk is the owner's alone. It waits until the slot needs blocks, unless it
            // is empty and large enough to be missed.
            if (inWho == Who::kOwner && first.state == ChunkState::kCurrent &&
                first.kind != ChunkKind::kSmall &&
                slots[first.sizeClass].Used() == first.remote.Count()) {
                Uninstall(first.sizeClass);
            }
            Settle(first); // where it says false, the chunk comes again
        }
    }
    if (inWho == Who::kVisitor) {
        ReturnCutMiddle();
    }
}

void ThreadHeap::DrainIfMuch() {
    if (mUnseen.load(std::memory_order_relaxed) >= kUnseenAtMost) {
        Drain(Who::kOwner);
    }
}

// Slots

void* ThreadHeap::AllocateSlowly(std::size_t inClass) {
    OwnerGuard const guard(*this);
    if (inClass >= SizeClasses::kOfSmallChunks) {
        return NewClientChunk(inClass);
    }
    Slot& slot = slots[inClass];
    for (;;) {
        if (void* const block = slot.Take()) {
            return block;
        }
        if (slot.chunk != nullptr) {
            if (slot.chunk->remote.Count() != 0) {
                RemoteFrees::State const taken = slot.chunk->remote.TakeAll();
                slot.free = taken.first;
                slot.AddUsed(0 - taken.count);
                continue;
            }
            slot.emptied = 0;
            Uninstall(inClass);
        }
        Drain(Who::kOwner);
        if (Chunk* const chunk = slot.available.Front()) {
            slot.available.Remove(*chunk);
            Install(*chunk);
        } else if (!NewChunk(inClass)) {
            throw std::bad_alloc();
        }
    }
}

void ThreadHeap::SlotEmptied(std::size_t inClass) {
    OwnerGuard const guard(*this);
    Slot& slot = slots[inClass];
    bool const isLast = slot.bytes == SizeOf(slot.chunk->kind);
    bool const isKept = isLast && SizeClasses::KeepsChunk(inClass);
    switch (slot.chunk->kind) {
    case ChunkKind::kSmall:
        slot.AddUsed(Slot::kParked);
        break;
    case ChunkKind::kMiddle:
    case ChunkKind::kLarge:
        if (++slot.emptied >= kEmptiedToPark ||
            (isKept && slot.chunk->kind == ChunkKind::kMiddle)) {
            Park(inClass);
        } else {
            ReturnSlot(inClass);
            KeepChunk(inClass);
        }
        break;
    }
}

/// Sees to it that a class that keeps a chunk has one, after it has returned one: a small one,
/// where there is memory.
void ThreadHeap::KeepChunk(std::size_t inClass) {
    if (slots[inClass].bytes == 0 && SizeClasses::KeepsChunk(inClass)) {
        NewChunk(inClass);
    }
}

/// Gives the slot's chunk back, which is empty. If it cannot go yet, it goes with the inbox.
void ThreadHeap::ReturnSlot(std::size_t inClass) {
    Chunk& chunk = Uninstall(inClass);
    if (!Settle(chunk)) {
        Drain(Who::kOwner);
    }
}

/// Keeps the slot's chunk though it is empty, and the eldest that was kept so no longer.
void ThreadHeap::Park(std::size_t inClass) {
    std::size_t const eldest =
        std::exchange(mParked[mNextParked], static_cast<std::uint8_t>(inClass));
    mNextParked = (mNextParked + 1) % kParkedAtMost;
    slots[inClass].AddUsed(Slot::kParked);
    Slot& slot = slots[eldest];
    if (eldest != inClass && slot.IsParked() && slot.chunk->kind != ChunkKind::kSmall) {
        slot.used.store(slot.Used(), std::memory_order_relaxed);
        slot.emptied = 0;
        if (slot.Used() == 0) {
            ReturnSlot(eldest);
        }
    }
}

void ThreadHeap::Dispose(Chunk& ioChunk, void* inBlock) {
    OwnerGuard const guard(*this);
    WriteLink(inBlock, ioChunk.free);
    ioChunk.free = static_cast<std::uint32_t>(static_cast<std::byte*>(inBlock) - ioChunk.origin);
    ioChunk.used.store(ioChunk.used.load(std::memory_order_relaxed) - 1, std::memory_order_release);
    std::size_t const index = ioChunk.sizeClass;
    if (!Settle(ioChunk)) {
        Drain(Who::kOwner);
    }
    DrainIfMuch();
    KeepChunk(index);
}

// Other heaps' blocks

void ThreadHeap::DisposeRemotely(Chunk& ioChunk, void* inBlock) {
    if (mOutgoing.chunk != &ioChunk) {
        SendOutgoing();
        mOutgoing.chunk = &ioChunk;
    }
    auto* const block = static_cast<std::byte*>(inBlock);
    if (mOutgoing.count == 0) {
        mOutgoing.last = block;
    }
    WriteLink(block, mOutgoing.first);
    mOutgoing.first = static_cast<std::uint32_t>(block - ioChunk.origin);
    ++mOutgoing.count;
    constexpr std::uint32_t kBytes = 4096;
    constexpr std::uint32_t kBlocks = 64;
    if (mOutgoing.count >= kBlocks ||
        mOutgoing.count * SizeClasses::kBlockSizes[ioChunk.sizeClass] >= kBytes ||
        ioChunk.used.load(std::memory_order_relaxed) - ioChunk.remote.Count() <= mOutgoing.count) {
        SendOutgoing();
    }
}

void ThreadHeap::SendOutgoing() {
    if (mOutgoing.count != 0) {
        Outgoing const out = std::exchange(mOutgoing, Outgoing{});
        PushRemotely(*out.chunk, out.first, out.last, out.count);
    }
}

void ThreadHeap::PushRemotely(Chunk& ioChunk, std::uint32_t inFirst, void* inLast,
                              std::uint32_t inCount) {
    ThreadHeap& heap = *ioChunk.owner.load(std::memory_order_relaxed);
    std::uint32_t const size = SizeOf(ioChunk.kind);
    RemoteFrees::Pushed const pushed =
        ioChunk.remote.Push(inFirst, inLast, inCount, ioChunk.used.load(std::memory_order_acquire));
    // From here on the chunk is there only if it must be queued. The heap is there for good.
    if (pushed.mustQueue) {
        heap.mInbox.Push(&ioChunk);
    }
    if (pushed.isEmpty &&
        heap.mUnseen.fetch_add(size, std::memory_order_relaxed) + size >= kUnseenAtMost) {
        BasicOwnerLock<NoPause>::Visit const visit(heap.mLock, std::try_to_lock);
        if (visit.IsIn()) {
            heap.Drain(Who::kVisitor);
        }
        // Otherwise the owner is at work, and looks itself.
    }
}

// Memory for chunks

/// Makes a chunk of a class and puts it into the slot. False without memory.
bool ThreadHeap::NewChunk(std::size_t inClass) {
    Slot& slot = slots[inClass];
    Chunk* const chunk = TakeMemory(SizeClasses::NextChunk(inClass, slot.bytes));
    if (chunk == nullptr) {
        return false;
    }
    slot.bytes += SizeOf(chunk->kind);
    chunk->used.store(0, std::memory_order_relaxed);
    chunk->free = 0;
    chunk->bump = Chunk::kFirstBlock;
    chunk->sizeClass = static_cast<std::uint8_t>(inClass);
    chunk->remote.Reset();
    chunk->owner.store(this, std::memory_order_relaxed);
    Install(*chunk);
    return true;
}

/// A chunk that is one block, header and all. Throws `std::bad_alloc`.
void* ThreadHeap::NewClientChunk(std::size_t inClass) {
    Chunk* const chunk =
        TakeMemory(inClass == SizeClasses::kOfSmallChunks ? ChunkKind::kSmall : ChunkKind::kMiddle);
    if (chunk == nullptr) {
        throw std::bad_alloc();
    }
    slots[inClass].bytes += SizeOf(chunk->kind);
    chunk->origin -= kChunkHeader;
    chunk->used.store(1, std::memory_order_relaxed);
    chunk->free = 0;
    chunk->sizeClass = static_cast<std::uint8_t>(inClass);
    chunk->bump = chunk->End();
    chunk->state = ChunkState::kFull;
    chunk->remote.Reset();
    chunk->owner.store(this, std::memory_order_relaxed);
    return chunk->origin + Chunk::kFirstBlock;
}

Chunk* ThreadHeap::TakeMemory(ChunkKind inKind) {
    if (inKind == ChunkKind::kSmall) {
        return TakeSmall();
    }
    if (inKind == ChunkKind::kMiddle) {
        return TakeMiddle();
    }
    Region* const region = TakeRegion();
    return region != nullptr ? &region->MakeLarge() : nullptr;
}

Region* ThreadHeap::TakeRegion() {
    Region* const region = mStore.Allocate();
    if (region != nullptr) {
        mRegions.PushFront(*region);
        mRegionCount.fetch_add(1, std::memory_order_relaxed);
    }
    return region;
}

void ThreadHeap::GiveRegion(Region& inRegion) {
    mRegions.Remove(inRegion);
    mRegionCount.fetch_sub(1, std::memory_order_relaxed);
    mStore.Free(inRegion);
}

Chunk* ThreadHeap::TakeMiddle() {
    if (mWithMiddles.Front() == nullptr) {
        Region* const region = TakeRegion();
        if (region == nullptr) {
            return nullptr;
        }
        region->MakeMiddles();
        mWithMiddles.PushFront(*region);
    }
    Region& region = *mWithMiddles.Front();
    Chunk& chunk = region.TakeMiddle();
    if (!region.HasMiddle()) {
        mWithMiddles.Remove(region);
    }
    return &chunk;
}

Chunk* ThreadHeap::TakeSmall() {
    if (mWithSmalls.Front() == nullptr) {
        ReturnParkedSmalls();
    }
    if (mWithSmalls.Front() == nullptr) {
        Chunk* const middle = TakeMiddle();
        if (middle == nullptr) {
            return nullptr;
        }
        Region& region = Region::Of(middle);
        region.Cut(*middle);
        mWithSmalls.PushFront(region);
    }
    Region& region = *mWithSmalls.Front();
    Chunk& chunk = region.TakeSmall();
    if (!region.HasSmall()) {
        mWithSmalls.Remove(region);
    }
    return &chunk;
}

/// Gives back the chunks that the slots of classes that keep none have parked.
void ThreadHeap::ReturnParkedSmalls() {
    for (std::size_t i = 0; i < SizeClasses::kOfSmallChunks; ++i) {
        Slot const& slot = slots[i];
        if (slot.IsParked() && slot.Used() == 0 && slot.chunk->kind == ChunkKind::kSmall &&
            !SizeClasses::KeepsChunk(i)) {
            ReturnSlot(i);
        }
    }
}

void ThreadHeap::GiveMemory(Chunk const& inChunk) {
    Region& region = Region::Of(&inChunk);
    if (inChunk.kind == ChunkKind::kLarge) {
        GiveRegion(region);
        return;
    }
    if (inChunk.kind == ChunkKind::kMiddle) {
        GiveMiddle(inChunk);
        return;
    }
    if (!region.HasSmall()) {
        mWithSmalls.PushFront(region);
    }
    region.GiveSmall(inChunk);
    bool const isOnlyMiddle = mWithSmalls.Front() == &region && region.withSmalls.next == nullptr &&
                              region.FreeSmalls() == Region::kSmallsInMiddle;
    // The last one stays cut for the next small chunk.
    if (region.AreAllFreeBeside(inChunk) && !isOnlyMiddle) {
        Chunk& middle = region.Join(inChunk);
        if (!region.HasSmall()) {
            mWithSmalls.Remove(region);
        }
        GiveMiddle(middle);
    }
}

/// Gives back the middle chunk that stays cut though all its small ones are free.
void ThreadHeap::ReturnCutMiddle() {
    Region* const region = mWithSmalls.Front();
    if (region == nullptr) {
        return;
    }
    if (Chunk* const middle = region->JoinAnyFree()) {
        if (!region->HasSmall()) {
            mWithSmalls.Remove(*region);
        }
        GiveMiddle(*middle);
    }
}

void ThreadHeap::GiveMiddle(Chunk const& inChunk) {
    Region& region = Region::Of(&inChunk);
    if (!region.HasMiddle()) {
        mWithMiddles.PushFront(region);
    }
    region.GiveMiddle(inChunk);
    if (region.IsFree()) {
        mWithMiddles.Remove(region);
        GiveRegion(region);
    }
}

// What the heap holds

void ThreadHeap::Release() {
    SendOutgoing();
    OwnerGuard const guard(*this);
    Drain(Who::kOwner);
    for (std::size_t i = 0; i < SizeClasses::kOfSmallChunks; ++i) {
        Slot& slot = slots[i];
        bool const isKept = SizeClasses::KeepsChunk(i) && slot.chunk != nullptr &&
                            slot.bytes == SizeOf(slot.chunk->kind);
        if (slot.chunk != nullptr && slot.Used() == slot.chunk->remote.Count() && !isKept) {
            ReturnSlot(i);
        }
    }
    ReturnCutMiddle();
}

void ThreadHeap::Abandon() {
    SendOutgoing();
    OwnerGuard const guard(*this);
    for (std::size_t i = 0; i < SizeClasses::kOfSmallChunks; ++i) {
        if (slots[i].chunk != nullptr) {
            Settle(Uninstall(i));
        }
    }
    Drain(Who::kOwner);
    ReturnCutMiddle();
}

void ThreadHeap::CountMine(Uses& ioUses) {
    SendOutgoing();
    OwnerGuard const guard(*this);
    Drain(Who::kOwner);
    Count(ioUses);
}

void ThreadHeap::CountOthers(Uses& ioUses) {
    BasicOwnerLock<NoPause>::Visit const visit(mLock);
    Drain(Who::kVisitor);
    Count(ioUses);
}

void ThreadHeap::Count(Uses& ioUses) {
    for (Region* region = mRegions.Front(); region != nullptr; region = region->all.next) {
        region->ForEachChunk([&](Chunk const& inChunk) {
            bool const isInSlot = inChunk.state == ChunkState::kCurrent;
            std::uint32_t const used = isInSlot ? slots[inChunk.sizeClass].Used()
                                                : inChunk.used.load(std::memory_order_relaxed);
            std::uint32_t const inUse = used - inChunk.remote.Count();
            if (inUse == 0 && !SizeClasses::KeepsChunk(inChunk.sizeClass)) {
                return; // it is as good as returned
            }
            Use& use = ioUses[inChunk.sizeClass];
            ++use.chunks;
            use.bytesHeld += SizeOf(inChunk.kind);
            use.blocks += SizeClasses::BlockCount(inChunk.sizeClass, inChunk.kind);
            use.blocksInUse += inUse;
        });
    }
}

} // namespace brindle::utility
