#include "tests/debug/OnAllocation.h"

#include <cstdlib>
#include <new>
#include <utility>

void* operator new(std::size_t inSize) {
    if (auto const* const function = std::exchange(brindle::tests::S_onAllocation, nullptr)) {
        (*function)();
        brindle::tests::S_onAllocation = function;
    }
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
