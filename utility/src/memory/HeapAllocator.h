#pragma once

#include "platform/AlignedMemory.h"

#include <cstddef>
#include <new>

namespace brindle::utility {

/// Gives standard containers memory directly from the heap, so that the small block allocator is
/// not re-entered in a program whose `operator new` is built on it.
template <typename T>
struct HeapAllocator {
    using value_type = T;

    HeapAllocator() = default;
    template <typename Other>
    HeapAllocator(HeapAllocator<Other> const&) noexcept {}

    T* allocate(std::size_t inCount) {
        void* const memory = platform::AllocateAligned(inCount * sizeof(T), 16);
        if (memory == nullptr) {
            throw std::bad_alloc();
        }
        return static_cast<T*>(memory);
    }
    void deallocate(T* inMemory, std::size_t) noexcept { platform::FreeAligned(inMemory); }

    friend bool operator==(HeapAllocator const&, HeapAllocator const&) noexcept { return true; }
    friend bool operator!=(HeapAllocator const&, HeapAllocator const&) noexcept { return false; }
};

} // namespace brindle::utility
