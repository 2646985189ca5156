// The benchmark program's operator new, which counts: each subject pays an addition for it.

#include "bench/allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::int64_t S_allocations = 0;

} // namespace

std::int64_t Allocations() noexcept {
    return S_allocations;
}

void* operator new(std::size_t inSize) {
    ++S_allocations;
    if (void* const block = std::malloc(inSize == 0 ? 1 : inSize)) {
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
