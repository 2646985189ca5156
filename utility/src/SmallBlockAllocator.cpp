#include <brindle/utility/SmallBlockAllocator.h>

#include "platform/AlignedMemory.h"
#include "utility/src/Managers.h"

namespace brindle::utility::SmallBlockAllocator {

namespace {

constexpr std::size_t kHeapAlignment = 16;

/// The class of a request, `kCount` if the heap serves it.
std::size_t ClassOf(unsigned int inSize) noexcept {
    return inSize <= SizeClasses::kLargest ? SizeClasses::kClassOf[inSize]
           : inSize == kMiddleChunk        ? SizeClasses::kOfMiddleChunks
                                           : SizeClasses::kCount;
}

} // namespace

void* Allocate(unsigned int inSize) {
    std::size_t const index = ClassOf(inSize);
    if (!Managers::AreReady() || index == SizeClasses::kCount) {
        return platform::AllocateAligned(inSize, kHeapAlignment);
    }
    return Managers::Of(index).Allocate(inSize);
}

void Dispose(void* inBlock, unsigned int inSize) {
    std::size_t const index = ClassOf(inSize);
    if (!Managers::AreReady() || index == SizeClasses::kCount ||
        !Managers::Of(index).Dispose(inBlock, inSize)) {
        platform::FreeAligned(inBlock);
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
