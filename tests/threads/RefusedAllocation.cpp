#include "tests/threads/RefusedAllocation.h"

#include <cstdlib>

namespace brindle::tests {

thread_local int S_grantedAllocations = -1;

namespace {

void* AllocateOrNull(std::size_t inSize) noexcept {
    if (S_grantedAllocations == 0) {
        S_grantedAllocations = -1;
        return nullptr;
    }
    if (S_grantedAllocations > 0) {
        --S_grantedAllocations;
    }
    return std::malloc(inSize == 0 ? 1 : inSize);
}

void* Allocate(std::size_t inSize) {
    void* const block = AllocateOrNull(inSize);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

} // namespace

} // namespace brindle::tests

// clang-format off
void* operator new(std::size_t inSize) { return brindle::tests::Allocate(inSize); }
void* operator new[](std::size_t inSize) { return brindle::tests::Allocate(inSize); }
void* operator new(std::size_t inSize, std::nothrow_t const&) noexcept { return brindle::tests::AllocateOrNull(inSize); }
void* operator new[](std::size_t inSize, std::nothrow_t const&) noexcept { return brindle::tests::AllocateOrNull(inSize); }
void operator delete(void* inBlock) noexcept { std::free(inBlock); }
void operator delete[](void* inBlock) noexcept { std::free(inBlock); }
void operator delete(void* inBlock, std::size_t) noexcept { std::free(inBlock); }
void operator delete[](void* inBlock, std::size_t) noexcept { std::free(inBlock); }
void operator delete(void* inBlock, std::nothrow_t const&) noexcept { std::free(inBlock); }
void operator delete[](void* inBlock, std::nothrow_t const&) noexcept { std::free(inBlock); }
// clang-format on
