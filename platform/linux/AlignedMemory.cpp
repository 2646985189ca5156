#include "platform/AlignedMemory.h"

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace brindle::platform {

namespace {

std::atomic<AllocationFilter> S_filterP{nullptr};

bool IsRefused(std::size_t inSize) noexcept {
    AllocationFilter const filter = S_filterP.load(std::memory_order_acquire);
    return filter != nullptr && !filter(inSize);
}

/// The address at which the next pages probably fit with the right alignment, without trimming.
std::atomic<std::uintptr_t> S_hint{0};

std::byte* Map(std::uintptr_t inHint, std::size_t inSize) noexcept {
    void* const pages = ::mmap(reinterpret_cast<void*>(inHint), inSize, PROT_READ | PROT_WRITE,
                               MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return pages != MAP_FAILED ? static_cast<std::byte*>(pages) : nullptr;
}

bool IsAligned(std::byte const* inPages, std::size_t inAlignment) noexcept {
    return (reinterpret_cast<std::uintptr_t>(inPages) & (inAlignment - 1)) == 0;
}

/// Maps more than is needed and unmaps what lies before and after the aligned part.
std::byte* MapTrimmed(std::size_t inSize, std::size_t inAlignment) noexcept {
    std::size_t const size = inSize + inAlignment;
    std::byte* const all = Map(0, size);
    if (all == nullptr) {
        return nullptr;
    }
    auto const address = reinterpret_cast<std::uintptr_t>(all);
    std::size_t const before = (inAlignment - address % inAlignment) % inAlignment;
    std::byte* const pages = all + before;
    if (before != 0) {
        ::munmap(all, before);
    }
    ::munmap(pages + inSize, size - before - inSize);
    return pages;
}

} // namespace

void* AllocateAligned(std::size_t inSize, std::size_t inAlignment) noexcept {
    if (IsRefused(inSize)) {
        return nullptr;
    }
    void* block = nullptr;
    int const error = ::posix_memalign(&block, inAlignment, std::max<std::size_t>(inSize, 1));
    return error == 0 ? block : nullptr;
}

void FreeAligned(void* inBlock) noexcept {
    std::free(inBlock);
}

void* AllocatePages(std::size_t inSize, std::size_t inAlignment) noexcept {
    if (IsRefused(inSize)) {
        return nullptr;
    }
    // The system assigns addresses downwards, so there is likely to be room below the last pages.
    std::byte* pages = Map(S_hint.load(std::memory_order_relaxed), inSize);
    if (pages != nullptr && !IsAligned(pages, inAlignment)) {
        ::munmap(pages, inSize);
        pages = MapTrimmed(inSize, inAlignment);
    }
    if (pages != nullptr) {
        S_hint.store(reinterpret_cast<std::uintptr_t>(pages) - inSize, std::memory_order_relaxed);
    }
    return pages;
}

bool FreePages(void* inPages, std::size_t inSize) noexcept {
    if (::munmap(inPages, inSize) == 0) {
        return true;
    }
    ::madvise(inPages, inSize, MADV_DONTNEED);
    return false;
}

void SetAllocationFilter(AllocationFilter inFilter) noexcept {
    S_filterP.store(inFilter, std::memory_order_release);
}

} // namespace brindle::platform
