#pragma once

#include <atomic>
#include <random>
#include <thread>

namespace brindle::tests {

/// Yields or spins between the atomic steps of a lock or a queue, at random.
struct RandomDelays {
    static void Pause() noexcept {
        static std::atomic<unsigned> seed{1};
        thread_local std::minstd_rand random(seed++);
        if (auto const choice = random() % 16; choice < 2) {
            std::this_thread::yield();
        } else if (choice == 2) {
            for (unsigned long volatile spins = random() % 2000; spins > 0; spins = spins - 1) {
            }
        }
    }
    static void BeforeSleep() noexcept { Pause(); }
};

} // namespace brindle::tests
