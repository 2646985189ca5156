#include <brindle/utility/SmallBlockAllocator.h>

#include "platform/AlignedMemory.h"
#include "utility/src/Managers.h"
#include "utility/src/ThreadStock.h"
#include "utility/src/TopChunks.h"

namespace brindle::utility::SmallBlockAllocator {

namespace {

constexpr std::size_t kHeapAlignment = 16;

/// The class of a request, `kCount` if the heap serves it.
std::size_t ClassOf(unsigned int inSize) noexcept {
    return inSize <= SizeClasses::kLargest ? SizeClasses::kClassOf[inSize]
           : inSize == kMiddleChunk        ? SizeClasses::kOfMiddleChunks
                                           : SizeClasses::kCount;
}

__attribute__((noinline)) void* AllocateSlowly(std::size_t inClass, unsigned int inSize) {
    if (!Managers::AreReady() || inClass == SizeClasses::kCount) {
        return platform::AllocateAligned(inSize, kHeapAlignment);
    }
    return inClass < SizeClasses::kStocked ? ThreadStock::TakeSlowly(inClass)
                                           : Managers::Of(inClass).Allocate(inSize);
}

__attribute__((noinline)) void DisposeSlowly(std::size_t inClass, void* inBlock,
                                             unsigned int inSize) {
    if (!Managers::AreReady() || inClass == SizeClasses::kCount) {
        platform::FreeAligned(inBlock);
    } else if (inClass < SizeClasses::kStocked && TopChunks::Hold(inBlock)) {
        ThreadStock::GiveSlowly(inClass, inBlock);
    } else if (inClass < SizeClasses::kStocked || !Managers::Of(inClass).Dispose(inBlock, inSize)) {
        platform::FreeAligned(inBlock);
    }
}

} // namespace

void* Allocate(unsigned int inSize) {
    std::size_t const index = ClassOf(inSize);
    if (index < SizeClasses::kStocked) {
        if (void* const block = ThreadStock::Mine().Take(index)) {
            return block;
        }
    }
    return AllocateSlowly(index, inSize);
}

void Dispose(void* inBlock, unsigned int inSize) {
    std::size_t const index = ClassOf(inSize);
    if (index < SizeClasses::kStocked && TopChunks::Hold(inBlock) &&
        ThreadStock::Mine().Give(index, inBlock)) {
        return;
    }
    DisposeSlowly(index, inBlock, inSize);
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
