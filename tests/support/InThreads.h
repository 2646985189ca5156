#pragma once

#include "tests/support/Barrier.h"

#include <thread>
#include <vector>

namespace brindle::tests {

/// Runs the function, given 0 and up, in several threads that begin together, and waits for them.
template <typename Function>
void InThreads(unsigned int inCount, Function const& inFunction) {
    Barrier start(inCount);
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < inCount; ++i) {
        threads.emplace_back([&, i] {
            start.wait();
            inFunction(i);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace brindle::tests
