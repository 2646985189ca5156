#include "tests/support/AllocationFailure.h"

#include <cstddef>
#include <cstdlib>

using brindle::tests::AllocationFailure;

void* operator new(std::size_t inSize, std::nothrow_t const&) noexcept {
    return AllocationFailure::IsNow() ? nullptr : std::malloc(inSize);
}

void* operator new(std::size_t inSize) {
    void* const block = operator new(inSize, std::nothrow);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* inBlock) noexcept {
    std::free(inBlock);
}

void operator delete(void* inBlock, std::size_t) noexcept {
    std::free(inBlock);
}
