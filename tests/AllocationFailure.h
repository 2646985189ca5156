#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

/// Lets the calling thread's allocation after `inSuccesses` further ones fail, as long as it lives.
/// Included by one source of a program: it replaces the program's `operator new`.
class AllocationFailure {
public:
    explicit AllocationFailure(int inSuccesses) { S_left = inSuccesses; }
    AllocationFailure(AllocationFailure const&) = delete;
    AllocationFailure& operator=(AllocationFailure const&) = delete;
    ~AllocationFailure() { S_left = kNever; }

    static bool HasHappened() { return S_left < 0 && S_left != kNever; }
    static bool IsNow() { return S_left != kNever && --S_left == -1; }

private:
    static constexpr int kNever = -1'000'000;
    inline static thread_local int S_left = kNever;
};

[[gnu::noinline]] void* operator new(std::size_t inSize) {
    void* const block = AllocationFailure::IsNow() ? nullptr : std::malloc(inSize);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

[[gnu::noinline]] void* operator new(std::size_t inSize, std::nothrow_t const&) noexcept {
    return AllocationFailure::IsNow() ? nullptr : std::malloc(inSize);
}

[[gnu::noinline]] void operator delete(void* inBlock) noexcept {
    std::free(inBlock);
}

[[gnu::noinline]] void operator delete(void* inBlock, std::size_t) noexcept {
    std::free(inBlock);
}
