#include <brindle/utility/SmallBlockAllocator.h>

#include "platform/AlignedMemory.h"
#include "utility/src/memory/Managers.h"
#include "utility/src/memory/ThreadStock.h"
#include "utility/src/memory/TopChunks.h"

namespace brindle::utility::SmallBlockAllocator {

namespace {

constexpr std::size_t kHeapAlignment = 16;

// Requests up to this size are served inline; those for the stock of 1024 take one more call.
constexpr unsigned int kLargestInLine = 128;

/// The class that serves a request; `kCount` if the heap does.
std::size_t ClassOf(unsigned int inSize) noexcept {
    return inSize <= SizeClasses::kLargest ? SizeClasses::kClassOf[inSize]
           : inSize == kMiddleChunk        ? SizeClasses::kOfMiddleChunks
                                           : SizeClasses::kCount;
}

__attribute__((noinline)) void* AllocateSlowly(unsigned int inSize) {
    std::size_t const index = ClassOf(inSize);
    if (!Managers::AreReady() || index == SizeClasses::kCount) {
        return platform::AllocateAligned(inSize, kHeapAlignment);
    }
    if (index >= SizeClasses::kStocked) {
        return Managers::Of(index).Allocate(inSize);
    }
    void* block = nullptr;
    return ThreadStock::Mine().Take(index, block) ? block : ThreadStock::TakeSlowly(index);
}

__attribute__((noinline)) void DisposeSlowly(void* inBlock, unsigned int inSize) {
    std::size_t const index = ClassOf(inSize);
    if (!Managers::AreReady() || index == SizeClasses::kCount) {
        platform::FreeAligned(inBlock);
    } else if (index >= SizeClasses::kStocked) {
        if (!Managers::Of(index).Dispose(inBlock, inSize)) {
            platform::FreeAligned(inBlock);
        }
    } else if (!TopChunks::Hold(inBlock)) {
        platform::FreeAligned(inBlock);
    } else if (!ThreadStock::Mine().Give(index, inBlock)) {
        ThreadStock::GiveSlowly(index, inBlock);
    }
}

} // namespace

void* Allocate(unsigned int inSize) {
    void* block = nullptr;
    if (inSize <= kLargestInLine &&
        ThreadStock::Mine().Take(SizeClasses::kClassOf[inSize], block)) {
        return block;
    }
    return AllocateSlowly(inSize);
}

void Dispose(void* inBlock, unsigned int inSize) {
    if (inSize <= kLargestInLine && TopChunks::AreKnownToHold(inBlock) &&
        ThreadStock::Mine().Give(SizeClasses::kClassOf[inSize], inBlock)) {
        return;
    }
    DisposeSlowly(inBlock, inSize);
}

void ReleaseStock() {
    if (Managers::AreReady()) {
        ThreadStock::ReleaseAll();
    }
}

unsigned int GetActualAllocationSize(unsigned int inSize) {
    if (!Managers::AreReady() || inSize > SizeClasses::kLargest) {
        return inSize;
    }
    return SizeClasses::kBlockSizes[SizeClasses::kClassOf[inSize]];
}

bool Metrics::GetSnapshot(Snapshot&) {
    return false;
}

} // namespace brindle::utility::SmallBlockAllocator
