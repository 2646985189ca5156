#pragma once

#include <new>

namespace brindle::tests {

/// How many more `operator new` of this thread are granted before one is refused; negative: all.
extern thread_local int S_grantedAllocations;

/// Calls the function again and again, with its first allocation refused, then its second, until it
/// needs no more than it is granted. Each failed call throws `std::bad_alloc`, upon which
/// `inAfterFailure` is called. Returns how often it failed.
template <typename Function, typename AfterFailure>
int RefuseEachAllocation(Function inFunction, AfterFailure inAfterFailure) {
    for (int failures = 0;; ++failures) {
        S_grantedAllocations = failures;
        try {
            inFunction();
            S_grantedAllocations = -1;
            return failures;
        } catch (std::bad_alloc const&) {
            S_grantedAllocations = -1;
            inAfterFailure();
        }
    }
}

} // namespace brindle::tests
