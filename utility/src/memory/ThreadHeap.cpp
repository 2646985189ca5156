#include "utility/src/memory/ThreadHeap.h"

#include "utility/src/memory/RegionStore.h"

#include <new>
#include <utility>

namespace brindle::utility {

Chunk Slot::S_noChunk;
ThreadSlots ThreadSlots::S_notMade;
ThreadSlots ThreadSlots::S_ended;
__thread ThreadSlots* ThreadSlots::t_mineP = &ThreadSlots::S_notMade;

/// Holds the heap's lock for the owner.
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

/// Makes a chunk with free blocks the one that its class allocates from.
void ThreadHeap::Install(Chunk& ioChunk) {
    Slot& slot = slots[ioChunk.sizeClass];
    slot.chunk = &ioChunk;
    // A large chunk stays in the slot until it is full. Between others the slot follows the frees.
    if (slot.followsFrees == ioChunk.IsLarge()) {
        slot.followsFrees = !ioChunk.IsLarge();
        for (Chunk* each = slot.withFree.Front(); each != nullptr; each = each->inClass.next) {
            each->slot.store(SlotToFollow(*each), std::memory_order_relaxed);
        }
    }
    if (ioChunk.IsLarge()) {
        Unlink(ioChunk);
        ioChunk.state.store(ChunkState::kCurrent, std::memory_order_relaxed);
    }
}

/// Adds a chunk to the list of those of its class that have free blocks.
void ThreadHeap::Link(Chunk& ioChunk) {
    bool const isCurrent = !ioChunk.IsLarge() && !mIsAbandoned;
    ioChunk.state.store(isCurrent ? ChunkState::kCurrent : ChunkState::kAvailable,
                        std::memory_order_relaxed);
    ioChunk.slot.store(SlotToFollow(ioChunk), std::memory_order_relaxed);
    slots[ioChunk.sizeClass].withFree.PushBack(ioChunk);
}

/// The slot that follows frees into a chunk with free blocks, the sink if none does.
Slot* ThreadHeap::SlotToFollow(Chunk const& inChunk) {
    Slot& slot = slots[inChunk.sizeClass];
    return !inChunk.IsLarge() && inChunk.IsCurrent() && slot.followsFrees ? &slot : &sink;
}

/// Takes a chunk in any state off the list of its class, and makes it full.
void ThreadHeap::Unlink(Chunk& ioChunk) {
    if (!ioChunk.IsFull() && !(ioChunk.IsLarge() && ioChunk.IsCurrent())) {
        slots[ioChunk.sizeClass].withFree.Remove(ioChunk);
    }
    ioChunk.state.store(ChunkState::kFull, std::memory_order_relaxed);
}

/// Removes a chunk from its slot and from the list, so that it is touched under the lock only.
void ThreadHeap::Detach(Chunk& ioChunk) {
    Slot& slot = slots[ioChunk.sizeClass];
    if (slot.chunk == &ioChunk) {
        slot.chunk = &Slot::S_noChunk;
    }
    if (slot.parked == &ioChunk) {
        slot.parked = nullptr;
    }
    if (ioChunk.IsParked()) {
        ioChunk.used.store(ioChunk.Used(), std::memory_order_release);
    }
    Unlink(ioChunk);
}

/// Reclaims a chunk that is not current if it is empty; otherwise lists it if it was full. Called
/// after blocks of it were freed. False if it is empty but queued, so that it cannot be reclaimed
/// yet.
bool ThreadHeap::Settle(Chunk& ioChunk) {
    if (ioChunk.IsCurrent()) {
        return true; // the owner decides when it needs blocks
    }
    RemoteFrees::State const remote = ioChunk.remote.Look();
    // If these are equal, no other thread has a block that it could push, and the owner is neither
    // freeing a block of the chunk nor allocating from it.
    if (ioChunk.used.load(std::memory_order_acquire) == remote.count) {
        if (remote.isQueued) {
            return false;
        }
        Unlink(ioChunk);
        slots[ioChunk.sizeClass].bytes -= SizeOf(ioChunk.kind);
        GiveMemory(ioChunk);
    } else if (ioChunk.IsFull()) {
        Link(ioChunk);
    }
    return true;
}

/// Reclaims an empty chunk, with the inbox if it is queued. For the owner.
void ThreadHeap::Return(Chunk& ioChunk) {
    Detach(ioChunk);
    if (!Settle(ioChunk)) {
        Drain(Caller::kOwner);
    }
}

/// Empties the inbox: reclaims or lists the chunks that remote frees have queued.
void ThreadHeap::Drain(Caller inCaller) {
    mUnseen.store(0, std::memory_order_relaxed);
    Chunk* forOwner = nullptr;
    while (Chunk* chunk = mInbox.TakeAll()) {
        while (chunk != nullptr) {
            Chunk& first = *std::exchange(chunk, chunk->nextInInbox);
            // The owner may be allocating from a current chunk, so a visitor must not reclaim it.
            bool const isCurrentAndEmpty =
                first.IsCurrent() && first.Used() == first.remote.Count();
            if (isCurrentAndEmpty && inCaller == Caller::kVisitor) {
                first.nextInInbox = std::exchange(forOwner, &first);
                continue;
            }
            first.remote.ClearQueued();
            if (isCurrentAndEmpty && &first != slots[first.sizeClass].chunk) {
                Detach(first);
            }
            Settle(first); // if that is false, the chunk has been queued again
        }
    }
    while (forOwner != nullptr) {
        mInbox.Push(std::exchange(forOwner, forOwner->nextInInbox));
    }
    if (inCaller == Caller::kVisitor) {
        ReturnCutMiddle();
    }
}

void ThreadHeap::DrainIfMuch() {
    if (mUnseen.load(std::memory_order_relaxed) >= kUnseenAtMost) {
        Drain(Caller::kOwner);
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
        if (void* const block = slot.chunk->Take()) {
            return block;
        }
        if (slot.Form()) {
            continue;
        }
        if (slot.HasChunk()) {
            if (slot.chunk->remote.Count() != 0) {
                RemoteFrees::State const taken = slot.chunk->remote.TakeAll();
                slot.chunk->free = taken.first;
                slot.chunk->AddUsed(0 - taken.count);
                continue;
            }
            slot.emptied = 0;
            Detach(*slot.chunk);
        }
        Drain(Caller::kOwner);
        if (Chunk* const chunk = slot.withFree.Front()) {
            Install(*chunk);
        } else if (!NewChunk(inClass)) {
            throw std::bad_alloc();
        }
    }
}

/// Parks a current chunk that has become empty, or reclaims it.
void ThreadHeap::CurrentEmptied(Chunk& ioChunk) {
    std::size_t const index = ioChunk.sizeClass;
    Slot& slot = slots[index];
    Chunk const* const first = slot.withFree.Front();
    bool const isAlone = first == nullptr || (first == &ioChunk && ioChunk.inClass.next == nullptr);
    if (!isAlone || (slot.chunk != &ioChunk && !slot.followsFrees)) {
        Return(ioChunk); // another chunk serves the next request
        return;
    }
    slot.chunk = &ioChunk;
    if (ioChunk.kind == ChunkKind::kSmall) {
        Park(ioChunk);
    } else if (++slot.emptied >= kEmptiedToPark ||
               (ioChunk.kind == ChunkKind::kMiddle && SizeClasses::KeepsChunk(index))) {
        Park(ioChunk);
        ReturnEldestParked(index);
    } else {
        Return(ioChunk);
    }
}

/// Keeps an empty chunk, in place of the one of its class that was parked before.
void ThreadHeap::Park(Chunk& ioChunk) {
    Unpark(ioChunk.sizeClass);
    ioChunk.AddUsed(Chunk::kParked);
    slots[ioChunk.sizeClass].parked = &ioChunk;
}

void ThreadHeap::Unpark(std::size_t inClass) {
    if (Chunk* const parked = std::exchange(slots[inClass].parked, nullptr)) {
        parked->used.store(parked->Used(), std::memory_order_relaxed);
        if (parked->Used() == 0) {
            Return(*parked);
        }
    }
}

/// Called after chunks were reclaimed: if the class keeps a chunk and has none left, gives it a
/// small one, unless there is no memory.
void ThreadHeap::KeepChunk(std::size_t inClass) {
    if (slots[inClass].bytes == 0 && SizeClasses::KeepsChunk(inClass)) {
        NewChunk(inClass);
    }
}

/// Records that a class has parked a chunk larger than small, and unparks the chunk of the class
/// that did so longest ago.
void ThreadHeap::ReturnEldestParked(std::size_t inClass) {
    std::size_t const eldest =
        std::exchange(mParked[mNextParked], static_cast<std::uint8_t>(inClass));
    mNextParked = (mNextParked + 1) % kParkedAtMost;
    Chunk const* const parked = slots[eldest].parked;
    if (eldest != inClass && parked != nullptr && parked->kind != ChunkKind::kSmall) {
        slots[eldest].emptied = 0;
        Unpark(eldest);
    }
}

/// Moves the remote frees of a current chunk to its free blocks. Otherwise every pair of calls that
/// empties the chunk but for these would take the slow path.
void ThreadHeap::AbsorbRemoteFrees(Chunk& ioChunk) {
    if (ioChunk.remote.Count() == 0) {
        return;
    }
    RemoteFrees::State const taken = ioChunk.remote.TakeAll();
    std::byte* last = ioChunk.origin + taken.first;
    while (std::uint32_t const next = ReadLink(last)) {
        last = ioChunk.origin + next;
    }
    WriteLink(last, ioChunk.free);
    ioChunk.free = taken.first;
    ioChunk.AddUsed(0 - taken.count);
}

void ThreadHeap::Dispose(Chunk& ioChunk, void* inBlock) {
    OwnerGuard const guard(*this);
    std::size_t const index = ioChunk.sizeClass;
    ioChunk.Push(inBlock, ioChunk.used.load(std::memory_order_relaxed) - 1);
    if (!ioChunk.IsCurrent()) {
        if (!Settle(ioChunk)) {
            Drain(Caller::kOwner);
        }
    } else if (ioChunk.Used() == ioChunk.remote.Count()) {
        AbsorbRemoteFrees(ioChunk);
        if (ioChunk.used.load(std::memory_order_relaxed) == 0) {
            CurrentEmptied(ioChunk);
        }
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
    ThreadHeap& heap = *Region::Of(&ioChunk).heap;
    std::uint32_t const size = SizeOf(ioChunk.kind);
    RemoteFrees::Pushed const pushed =
        ioChunk.remote.Push(inFirst, inLast, inCount, ioChunk.used.load(std::memory_order_acquire));
    // From here on the chunk may have been reclaimed, unless this thread has to queue it. The heap
    // is never freed.
    if (pushed.mustQueue) {
        heap.mInbox.Push(&ioChunk);
    }
    if (pushed.isEmpty &&
        heap.mUnseen.fetch_add(size, std::memory_order_relaxed) + size >= kUnseenAtMost) {
        BasicOwnerLock<NoPause>::Visit const visit(heap.mLock);
        heap.Drain(Caller::kVisitor);
    }
}

// Memory for chunks

/// Creates a chunk of a class and installs it in the slot. False without memory.
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
    chunk->slot.store(&sink, std::memory_order_relaxed);
    Link(*chunk);
    Install(*chunk);
    return true;
}

/// A whole chunk, including its header, as one block. Throws `std::bad_alloc`.
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
    chunk->state.store(ChunkState::kFull, std::memory_order_relaxed);
    chunk->remote.Reset();
    chunk->slot.store(&sink, std::memory_order_relaxed);
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
        region->heap = this;
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
    if (mWithSmalls.Front() == nullptr && mWithMiddles.Front() == nullptr) {
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

/// Reclaims the empty small chunks that are parked by classes that keep none.
void ThreadHeap::ReturnParkedSmalls() {
    for (std::size_t i = 0; i < SizeClasses::kOfSmallChunks; ++i) {
        Chunk* const chunk = slots[i].parked;
        if (chunk != nullptr && chunk->Used() == 0 && chunk->kind == ChunkKind::kSmall &&
            !SizeClasses::KeepsChunk(i)) {
            Return(*chunk);
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
    // The last middle chunk with small ones stays split for the next small chunk.
    if (region.AreSiblingsFree(inChunk) && !isOnlyMiddle) {
        Chunk& middle = region.Join(inChunk);
        if (!region.HasSmall()) {
            mWithSmalls.Remove(region);
        }
        GiveMiddle(middle);
    }
}

/// Gives back the middle chunk that is still split although all its small chunks are free.
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
    Drain(Caller::kOwner);
    for (std::size_t i = 0; i < SizeClasses::kOfSmallChunks; ++i) {
        Slot& slot = slots[i];
        if (slot.bytes == 0) {
            continue;
        }
        Unpark(i);
        if (slot.HasChunk() && slot.chunk->Used() == slot.chunk->remote.Count()) {
            Return(*slot.chunk);
        }
        for (Chunk* chunk = slot.withFree.Front(); chunk != nullptr;) {
            Chunk& each = *std::exchange(chunk, chunk->inClass.next);
            if (each.Used() == each.remote.Count()) {
                Detach(each);
                Settle(each);
            }
        }
        Drain(Caller::kOwner);
        KeepChunk(i);
    }
    ReturnCutMiddle();
}

void ThreadHeap::Abandon() {
    SendOutgoing();
    OwnerGuard const guard(*this);
    mIsAbandoned = true;
    for (std::size_t i = 0; i < SizeClasses::kOfSmallChunks; ++i) {
        Slot& slot = slots[i];
        if (slot.HasChunk()) {
            Chunk& chunk = *slot.chunk;
            Detach(chunk);
            Settle(chunk);
        }
        for (Chunk* chunk = slot.withFree.Front(); chunk != nullptr;) {
            Chunk& each = *std::exchange(chunk, chunk->inClass.next);
            if (each.IsCurrent()) {
                Detach(each);
                Settle(each);
            }
        }
    }
    Drain(Caller::kOwner);
    ReturnCutMiddle();
}

void ThreadHeap::Adopt() {
    OwnerGuard const guard(*this);
    mIsAbandoned = false;
    for (Slot& slot : slots) {
        for (Chunk* chunk = slot.withFree.Front(); chunk != nullptr; chunk = chunk->inClass.next) {
            if (!chunk->IsLarge()) {
                chunk->state.store(ChunkState::kCurrent, std::memory_order_relaxed);
                chunk->slot.store(SlotToFollow(*chunk), std::memory_order_relaxed);
            }
        }
    }
}

void ThreadHeap::CountMine(Uses& ioUses) {
    SendOutgoing();
    OwnerGuard const guard(*this);
    Drain(Caller::kOwner);
    Count(ioUses);
}

void ThreadHeap::CountOthers(Uses& ioUses) {
    BasicOwnerLock<NoPause>::Visit const visit(mLock);
    Drain(Caller::kVisitor);
    Count(ioUses);
}

void ThreadHeap::Count(Uses& ioUses) {
    for (Region* region = mRegions.Front(); region != nullptr; region = region->all.next) {
        region->ForEachChunk([&](Chunk const& inChunk) {
            std::uint32_t const inUse = inChunk.Used() - inChunk.remote.Count();
            if (inUse == 0 && !SizeClasses::KeepsChunk(inChunk.sizeClass)) {
                return; // it is reclaimed as soon as memory is needed
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
