#include "tests/debug/AllocationHook.h"

#include <cstddef>
#include <cstdlib>
#include <new>

void* operator new(std::size_t inSize) {
    brindle::tests::AllocationHook::Call();
    if (void* const block = std::malloc(inSize)) {
        return block;
    }
    throw std::bad_alloc();
}

void operator delete(void* inBlock) noexcept {
    std::free(inBlock);
}

void operator delete(void* inBlock, std::size_t) noexcept {
    std::free(inBlock);
}
