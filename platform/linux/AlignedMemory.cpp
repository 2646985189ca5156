#include "platform/AlignedMemory.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace brindle::platform {

namespace {

std::atomic<AllocationFilter> S_filterP{nullptr};

} // namespace

void* AllocateAligned(std::size_t inSize, std::size_t inAlignment) noexcept {
    AllocationFilter const filter = S_filterP.load(std::memory_order_acquire);
    if (filter != nullptr && !filter(inSize)) {
        return nullptr;
    }
    void* block = nullptr;
    int const error = ::posix_memalign(&block, inAlignment, std::max<std::size_t>(inSize, 1));
    return error == 0 ? block : nullptr;
}

void FreeAligned(void* inBlock) noexcept {
    std::free(inBlock);
}

void SetAllocationFilter(AllocationFilter inFilter) noexcept {
    S_filterP.store(inFilter, std::memory_order_release);
}

} // namespace brindle::platform
