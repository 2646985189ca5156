#include "threads/src/locks/Gate.h"
#include "threads/src/locks/ReadWriteLock.h"

#include <benchmark/benchmark.h>
#include <pthread.h>

#include <atomic>
#include <shared_mutex>

namespace {

using brindle::threads::Gate;
using brindle::threads::ReadWriteLock;

/// A lock that may be shared, under the names of the standard.
struct Brindle {
    void lock_shared() { lock.LockShared(false); }
    void unlock_shared() { lock.UnlockShared(); }
    ReadWriteLock lock;
};

struct Posix {
    Posix() { pthread_rwlock_init(&lock, nullptr); }
    Posix(Posix const&) = delete;
    Posix& operator=(Posix const&) = delete;
    ~Posix() { pthread_rwlock_destroy(&lock); }
    void lock_shared() { pthread_rwlock_rdlock(&lock); }
    void unlock_shared() { pthread_rwlock_unlock(&lock); }
    pthread_rwlock_t lock;
};

/// The least that shared holders can be counted with; excludes nobody.
struct Counter {
    void lock_shared() { count.fetch_add(1, std::memory_order_acquire); }
    void unlock_shared() { count.fetch_sub(1, std::memory_order_release); }
    std::atomic<int> count{0};
};

template <typename Lock>
void EnterAndLeave(benchmark::State& ioState) {
    static Lock lock;
    for (auto _ : ioState) {
        lock.lock_shared();
        benchmark::ClobberMemory();
        lock.unlock_shared();
    }
}

void Gate_Brindle(benchmark::State& ioState) {
    static Gate gate(true);
    for (auto _ : ioState) {
        gate.Wait();
        benchmark::ClobberMemory();
    }
}

void Gate_Load(benchmark::State& ioState) {
    static std::atomic<int> isOpen{1};
    for (auto _ : ioState) {
        benchmark::DoNotOptimize(isOpen.load(std::memory_order_acquire));
        benchmark::ClobberMemory();
    }
}

#define BRN_SHARED_ROWS(inLock, inWho)                                                             \
    BENCHMARK_TEMPLATE(EnterAndLeave, inLock)->Name("shared lock/" inWho "/one thread");           \
    BENCHMARK_TEMPLATE(EnterAndLeave, inLock)->Name("shared lock/" inWho "/two threads")->Threads(2)

BRN_SHARED_ROWS(Brindle, "brindle");
BRN_SHARED_ROWS(std::shared_mutex, "std::shared_mutex");
BRN_SHARED_ROWS(Posix, "pthread_rwlock");
BRN_SHARED_ROWS(Counter, "(atomic counter)");
BENCHMARK(Gate_Brindle)->Name("open gate/brindle/wait");
BENCHMARK(Gate_Load)->Name("open gate/(atomic load)/wait");

} // namespace
