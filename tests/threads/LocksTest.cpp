#include <brindle/threads/Barrier.h>
#include <brindle/threads/CallOnce.h>
#include <brindle/threads/ScopedLock.h>
#include <brindle/threads/SyncPoint.h>

#include "tests/support/InThreads.h"
#include "tests/support/RandomDelays.h"
#include "tests/support/RecordingErrorManager.h"
#include "threads/src/locks/Gate.h"
#include "threads/src/locks/ReadWriteLock.h"
#include "threads/src/locks/ThreadErrors.h"

#include <boost/thread/thread.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <stdexcept>

namespace brindle::threads {

namespace {

/// Lets the test wait until a thread is about to sleep in a lock.
struct SignalsBeforeSleep {
    inline static std::atomic<SyncPoint*> S_signal{nullptr};
    static void Pause() noexcept {}
    static void BeforeSleep() noexcept {
        boost::this_thread::disable_interruption const uninterrupted;
        if (SyncPoint* const signal = S_signal.exchange(nullptr)) {
            signal->Wait();
        }
    }
};

using tests::InThreads;
using tests::RandomDelays;

/// Runs the function in a thread, and returns when that is about to sleep in a lock. The thread is
/// interrupted, which must not end its sleep.
template <typename Function>
boost::thread Sleeper(Function inFunction) {
    SyncPoint isAboutToSleep(2);
    SignalsBeforeSleep::S_signal = &isAboutToSleep;
    boost::thread thread([inFunction] { EXPECT_NO_THROW(inFunction()); });
    thread.interrupt();
    isAboutToSleep.Wait();
    return thread;
}

TEST(ThreadErrors, AreReportedAndRethrown) {
    tests::RecordingErrorManager errors;
    EXPECT_THROW(ReportingThreadErrors([] { throw boost::thread_resource_error(); }),
                 boost::thread_resource_error);
    EXPECT_THROW(ReportingThreadErrors([] { throw boost::lock_error(); }), boost::lock_error);
    EXPECT_EQ(errors.TakeLines(), "1 106 20 $$$/brn/threads/Error/NotEnoughThreadResources="
                                  "Not enough thread resources.\n"
                                  "1 106 21 $$$/brn/threads/Error/FailedToAcquireThreadLock="
                                  "Failure to acquire thread lock.\n");
    errors.onError = [] { throw 7; };
    EXPECT_THROW(ReportingThreadErrors([] { throw boost::lock_error(); }), int);
    EXPECT_THROW(ReportingThreadErrors([] { throw boost::condition_error(); }),
                 boost::condition_error);
    EXPECT_EQ(errors.TakeLines(), "");
}

TEST(Barrier, IsTrueForOneCallerOfEachCycle) {
    EXPECT_THROW(SyncPoint("nobody", 0), std::invalid_argument);
    Barrier barrier(3), moved(barrier);
    moved = static_cast<Barrier&>(moved);
    std::atomic<int> last{0};
    InThreads(3, [&](unsigned) {
        for (int cycle = 1; cycle <= 100; ++cycle) {
            last += moved.Wait();
            moved.Wait();
            EXPECT_EQ(last, cycle);
            moved.Wait();
        }
    });
}

TEST(SyncPoint, ExistsWhileAThreadWaitsThoughEveryHandleIsDestroyed) {
    for (int i = 0; i < 100; ++i) {
        std::optional<SyncPoint> first(2), second(first);
        std::thread waiter([&] { first->Wait(); });
        second->Wait();
        second.reset();
        first.reset();
        waiter.join();
    }
}

TEST(RecursiveMutex, ExcludesOtherThreadsAndNotItsOwner) {
    RecursiveMutex source("the name is not kept"), mutex(source);
    int count = 0; // not atomic: the mutex guards it
    InThreads(3, [&](unsigned) {
        RecursiveMutexLock const outer(mutex, true);
        for (int i = 0; i < 1000; ++i) {
            RecursiveMutexLock const inner(mutex, true);
            ++count;
        }
    });
    EXPECT_EQ(count, 3000);
}

TEST(CallOnce, RunsUntilItSucceedsAndNeverAgain) {
    static std::int32_t flag, innerFlag;
    static int runs; // not atomic: every caller must see what the routine wrote
    auto const routine = [] {
        CallOnce([] { runs = 0; }, innerFlag);
        std::this_thread::yield(); // the others come to wait
        if (++runs == 1) {
            throw std::runtime_error("the first time");
        }
    };
    for (int i = 0; i < 20; ++i) {
        flag = innerFlag = 0;
        std::atomic<int> failures{0}, successes{0};
        InThreads(3, [&](unsigned) {
            try {
                CallOnce(routine, flag);
            } catch (std::runtime_error const&) {
                ++failures;
                CallOnce(routine, flag);
            }
            successes += runs == 2;
        });
        EXPECT_EQ(failures, 1);
        EXPECT_EQ(successes, 3);
        EXPECT_EQ(flag, 1);
    }
}

using SignallingGate = BasicGate<SignalsBeforeSleep>;

TEST(Gate, ReleasesSleepersEvenIfItClosesAtOnce) {
    std::optional<SignallingGate> gate(false);
    for (bool const isDestroyed : {false, false, true}) {
        boost::thread sleeper = Sleeper([&] { gate->Wait(); });
        isDestroyed ? gate.reset() : (gate->Open(), gate->Close());
        sleeper.join();
    }
}

TEST(Gate, LosesNoWakeUp) {
    BasicGate<RandomDelays> gate(false);
    Barrier all(4);
    int value = 0; // not atomic: the gate makes it visible
    InThreads(4, [&](unsigned inThread) {
        for (int round = 1; round <= 300; ++round) {
            if (inThread == 0) {
                value = round;
                gate.Open();
            } else {
                gate.Wait();
                EXPECT_EQ(value, round);
            }
            all.Wait();
            gate.Close();
            all.Wait();
        }
    });
}

using SignallingLock = BasicReadWriteLock<SignalsBeforeSleep>;

TEST(ReadWriteLock, KeepsNewReadersOutWhileAWriterWaits) {
    SignallingLock lock;
    EXPECT_TRUE(lock.LockShared(false));
    EXPECT_FALSE(lock.LockExclusive(true));
    EXPECT_TRUE(lock.LockShared(true)) << "the failed attempt left the lock as it was";
    int value = 0;
    boost::thread writer = Sleeper([&] {
        lock.LockExclusive(false);
        value = 1;
        lock.UnlockExclusive();
    });
    EXPECT_FALSE(lock.LockShared(true));
    boost::thread reader = Sleeper([&] {
        lock.LockShared(false);
        EXPECT_EQ(value, 1);
        lock.UnlockShared();
    });
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(value, 0);
        lock.UnlockShared();
    }
    writer.join();
    reader.join();
}

TEST(ReadWriteLock, ExcludesInEveryMixtureOfOperations) {
    BasicReadWriteLock<RandomDelays> lock;
    int first = 0, second = 0; // readers see them equal, as the exclusive lock leaves them
    std::atomic<int> writes{0};
    InThreads(4, [&](unsigned inThread) {
        std::minstd_rand random(inThread + 1);
        for (int i = 0; i < 2000; ++i) {
            bool const isTry = random() % 2 == 0;
            if (random() % 4 != 0) {
                if (lock.LockShared(isTry)) {
                    EXPECT_EQ(first, second);
                    lock.UnlockShared();
                }
            } else if (lock.LockExclusive(isTry)) {
                ++first;
                RandomDelays::Pause();
                second = first;
                ++writes;
                lock.UnlockExclusive();
            }
        }
    });
    EXPECT_EQ(first, writes);
    EXPECT_TRUE(lock.LockExclusive(true)) << "no thread is left inside";
    EXPECT_FALSE(lock.LockShared(true));
    lock.UnlockExclusive();
}

TEST(ReadWriteLock, GuardsReleaseOnceAndThrowOnMisuse) {
    ReadWriteLock lock;
    // The analysis rejects this misuse at compile time.
    auto const misuse = [&]() BRN_NO_THREAD_SAFETY_ANALYSIS {
        SharedGuard shared(lock);
        ExclusiveGuard exclusive(lock, true);
        EXPECT_FALSE(exclusive.IsLocked());
        EXPECT_THROW(exclusive.Unlock(), boost::lock_error);
        EXPECT_THROW(shared.Lock(), boost::lock_error);
        shared.Unlock();
        EXPECT_THROW(shared.Unlock(), boost::lock_error);
        exclusive.Lock();
        EXPECT_THROW(exclusive.Lock(), boost::lock_error);
    };
    misuse();
    EXPECT_TRUE(ExclusiveGuard(lock, true).IsLocked());
}

} // namespace

} // namespace brindle::threads
