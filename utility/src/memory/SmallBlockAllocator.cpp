#include <brindle/utility/SmallBlockAllocator.h>

#include "platform/AlignedMemory.h"
#include "utility/src/memory/HeapRegistry.h"
#include "utility/src/memory/RegionStore.h"

namespace brindle::utility::SmallBlockAllocator {

namespace {

constexpr std::size_t kHeapAlignment = 16;

__attribute__((noinline)) void* AllocateSlowly(unsigned int inSize) {
    std::size_t const index = SizeClasses::ClassOf(inSize);
    if (!HeapRegistry::IsReady() || index == SizeClasses::kCount) {
        return platform::AllocateAligned(inSize, kHeapAlignment);
    }
    ThreadHeap* const mine = HeapRegistry::MineOrMade();
    return mine != nullptr ? mine->AllocateSlowly(index) : HeapRegistry::AllocateWithoutHeap(index);
}

__attribute__((noinline)) void DisposeSlowly(void* inBlock, unsigned int inSize) {
    // Above 8192 bytes, all sizes but 66080 are served by the system's heap.
    std::size_t const index = SizeClasses::ClassOf(inSize);
    if (index == SizeClasses::kCount || !RegionStore::Holds(inBlock)) {
        platform::FreeAligned(inBlock);
        return;
    }
    Region& region = Region::Of(inBlock);
    Chunk& chunk = index >= SizeClasses::kOfSmallChunks ? region.ClientChunkAt(inBlock)
                                                        : region.ChunkOf(inBlock);
    ThreadHeap* const mine = HeapRegistry::MineOrNull();
    if (mine == nullptr) {
        ThreadHeap::PushRemotely(
            chunk, static_cast<std::uint32_t>(static_cast<std::byte*>(inBlock) - chunk.origin),
            inBlock, 1);
    } else if (region.heap == mine) {
        mine->Dispose(chunk, inBlock);
    } else {
        mine->DisposeRemotely(chunk, inBlock);
    }
}

Figures FiguresOf(ThreadHeap::Use const& inUse, std::size_t inClass) noexcept {
    return {inUse.blocksInUse, inUse.blocksInUse * SizeClasses::kBlockSizes[inClass], inUse.blocks,
            inUse.bytesHeld, inUse.chunks};
}

} // namespace

void* Allocate(unsigned int inSize) {
    if (inSize <= SizeClasses::kLargest) {
        void* const block = ThreadSlots::Mine().slots[SizeClasses::kClassOf[inSize]].chunk->Take();
        if (block != nullptr) {
            return block;
        }
    }
    return AllocateSlowly(inSize);
}

void Dispose(void* inBlock, unsigned int inSize) {
    // The chunk of a block that is a whole chunk is found in another way, by the slow path.
    if (inSize <= SizeClasses::kLargest && inSize != kSmallChunk) {
        if (Region* const region = RegionStore::Known(inBlock)) {
            Chunk& chunk = region->ChunkOf(inBlock);
            Slot* const slot = chunk.slot.load(std::memory_order_relaxed);
            if (ThreadSlots::Mine().Has(slot) && chunk.Give(inBlock)) {
                // The next allocation returns this block, which is in the processor's cache.
                slot->chunk = &chunk;
                return;
            }
        }
    }
    DisposeSlowly(inBlock, inSize);
}

void ReleaseStock() {
    if (HeapRegistry::IsReady()) {
        HeapRegistry::Release();
    }
}

unsigned int GetActualAllocationSize(unsigned int inSize) {
    if (!HeapRegistry::IsReady() || inSize > SizeClasses::kLargest) {
        return inSize;
    }
    return SizeClasses::kBlockSizes[SizeClasses::kClassOf[inSize]];
}

Figures GetFigures(unsigned int inSize) {
    std::size_t const index = SizeClasses::ClassOf(inSize);
    if (index == SizeClasses::kCount || !HeapRegistry::IsReady()) {
        return {};
    }
    return FiguresOf(HeapRegistry::Count().classes[index], index);
}

Figures GetFigures() {
    Figures total;
    if (!HeapRegistry::IsReady()) {
        return total;
    }
    HeapRegistry::Total const counted = HeapRegistry::Count();
    for (std::size_t i = 0; i < SizeClasses::kCount; ++i) {
        Figures const figures = FiguresOf(counted.classes[i], i);
        total.blocksInUse += figures.blocksInUse;
        total.bytesInUse += figures.bytesInUse;
        total.blocksHeld += figures.blocksHeld;
        total.chunksHeld += figures.chunksHeld;
    }
    total.bytesHeld = counted.bytesFromSystem;
    return total;
}

bool Metrics::GetSnapshot(Snapshot&) {
    return false;
}

} // namespace brindle::utility::SmallBlockAllocator
