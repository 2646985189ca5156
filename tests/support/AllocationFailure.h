#pragma once

#include <new>

namespace brindle::tests {

/// Lets the calling thread's `operator new` after `inSuccesses` further ones fail, as long as it
/// lives. A program that uses it is built with AllocationFailure.cpp.
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

/// Calls the function again and again, with its first allocation refused, then its second, until it
/// needs no more than it is granted. Each failed call throws `std::bad_alloc`, upon which
/// `inAfterFailure` is called. Returns how often it failed.
template <typename Function, typename AfterFailure>
int RefuseEachAllocation(Function inFunction, AfterFailure inAfterFailure) {
    for (int failures = 0;; ++failures) {
        try {
            AllocationFailure const failure(failures);
            inFunction();
            return failures;
        } catch (std::bad_alloc const&) {
            inAfterFailure();
        }
    }
}

} // namespace brindle::tests
