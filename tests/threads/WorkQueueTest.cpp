#include <brindle/threads/Thread.h>

#include "tests/support/AllocationFailure.h"
#include "tests/support/InThreads.h"
#include "tests/threads/MakePool.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <sys/syscall.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <fstream>
#include <future>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

std::atomic<std::time_t> S_stoppedAt{0}; // 0 unless the system's clock stands still

} // namespace

/// In place of the C library's function, to stop the clock.
extern "C" int clock_gettime(clockid_t inClock, timespec* outTime) noexcept {
    std::time_t const stopped = S_stoppedAt;
    if (inClock == CLOCK_REALTIME && stopped != 0) {
        *outTime = {stopped, 0};
        return 0;
    }
    return static_cast<int>(::syscall(SYS_clock_gettime, inClock, outTime));
}

namespace brindle::threads {

namespace {

using Clock = std::chrono::system_clock;
using Pool = boost::shared_ptr<AsyncThreadedExecutor>;

TEST(WorkQueue, OneWorkerRunsItemsInTheOrderOfPosting) {
    Pool const pool = MakePool(1);
    std::vector<int> ran;
    pool->Post([&] { ran.push_back(1); }, 0);
    pool->Post([&] { throw std::runtime_error("dropped"); }, 0);
    pool->Post([&] { throw 1; }, 0);
    EXPECT_TRUE(pool->Post({}, 0));
    pool->Post(
        [&] {
            EXPECT_TRUE(pool->IsCurrentThreadExecutorThread());
            pool->Shutdown();
            pool->Synchronize();
            EXPECT_FALSE(pool->IsShutdown());
            EXPECT_TRUE(pool->Post([&] { ran.push_back(3); }, 0));
            ran.push_back(2);
        },
        0);
    pool->Synchronize();
    pool->Synchronize();
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 3}));
    EXPECT_FALSE(pool->IsCurrentThreadExecutorThread());
}

TEST(WorkQueue, HasTheNumberOfWorkersAskedFor) {
    EXPECT_EQ(MakePool(-1)->GetThreadCount(),
              static_cast<std::int32_t>(std::thread::hardware_concurrency()));
    EXPECT_EQ(MakePool(3)->GetThreadCount(), 3);
    for (int const count : {0, -2}) {
        Pool const pool = MakePool(count);
        auto const token = boost::make_shared<int>();
        EXPECT_EQ(pool->GetThreadCount(), 0);
        EXPECT_TRUE(pool->Post([token] { ADD_FAILURE(); }, 0));
        EXPECT_TRUE(pool->Post([token] { ADD_FAILURE(); }, 1));
        pool->Synchronize();
        EXPECT_EQ(token.use_count(), 3);
        pool->Shutdown();
        EXPECT_EQ(token.use_count(), 1);
        pool->Synchronize();
    }
}

TEST(WorkQueue, DelayedItemsRunWhenTheyAreDueAndInThatOrder) {
    constexpr std::size_t kCount = 300;
    Pool const pool = MakePool(1);
    for (std::uint32_t const late : {0xFFFFFFFFu, 0x80000001u, 3'600'000u}) {
        pool->Post([] { ADD_FAILURE(); }, late);
    }
    std::vector<Clock::time_point> earliest(kCount), latest(kCount); // due between these
    std::vector<std::size_t> ran;
    std::promise<void> done;
    std::mt19937 random(1);
    for (std::size_t i = 0; i < kCount; ++i) {
        std::chrono::milliseconds const delay(random() % 40 + 1);
        earliest[i] = std::chrono::floor<std::chrono::microseconds>(Clock::now()) + delay;
        pool->Post(
            [&, i] {
                EXPECT_GE(Clock::now(), earliest[i]);
                ran.push_back(i);
                if (ran.size() == kCount) {
                    done.set_value();
                }
            },
            static_cast<std::uint32_t>(delay.count()));
        latest[i] = Clock::now() + delay;
    }
    done.get_future().wait();
    for (std::size_t i = 1; i < kCount; ++i) {
        EXPECT_LE(earliest[ran[i - 1]], latest[ran[i]]);
    }
}

TEST(WorkQueue, EqualDelaysRunInTheOrderOfPosting) {
    constexpr int kCount = 20'000;
    Pool const pool = MakePool(1);
    std::vector<int> ran;
    std::promise<void> done;
    S_stoppedAt = std::time(nullptr);
    for (int i = 0; i < kCount; ++i) {
        pool->Post([&, i] { ran.push_back(i), i + 1 == kCount ? done.set_value() : void(); }, 20);
    }
    S_stoppedAt = 0;
    done.get_future().wait();
    EXPECT_TRUE(std::is_sorted(ran.begin(), ran.end()));
}

// The clock cannot be set for a test, so this looks at the system call in which the worker waits.
TEST(WorkQueue, AWorkerWaitsByTheClockThatItemsAreDueBy) {
    Pool const pool = MakePool(1);
    std::promise<std::uint32_t> id;
    pool->Post([&] { id.set_value(GetCurrentThreadID()); }, 0);
    std::string const path =
        "/proc/self/task/" + std::to_string(id.get_future().get()) + "/syscall";
    if (!std::ifstream(path)) {
        GTEST_SKIP() << path << " cannot be read";
    }
    pool->Post([] {}, 3'600'000);
    // The worker may still be on its way to sleep until the item is due.
    long call = 0;
    unsigned long word = 0, operation = 0, value = 0, deadline = 0;
    while (call != SYS_futex || deadline == 0) {
        std::ifstream(path) >> call >> std::hex >> word >> operation >> value >> deadline;
    }
    constexpr unsigned long kClockRealtime = 256;
    EXPECT_NE(operation & kClockRealtime, 0U);
}

TEST(WorkQueue, ABusyWorkerPassesTheTimerRoleOn) {
    Pool const pool = MakePool(2);
    for (int i = 0; i < 50; ++i) {
        std::promise<void> delayedRan, bothRan;
        pool->Post([&] { delayedRan.set_value(); }, 1);
        pool->Post([&] { delayedRan.get_future().wait(), bothRan.set_value(); }, 0);
        bothRan.get_future().wait();
    }
}

TEST(WorkQueue, ShutdownRunsQueuedItemsAndDropsThoseNotDue) {
    Pool const pool = MakePool(1);
    auto const token = boost::make_shared<int>();
    std::atomic<int> ran{0};
    pool->Suspend();
    std::thread waiting([&] { pool->WaitUntilResumed(); });
    pool->Post([&] { ++ran; }, 0);
    // The destructor of a dropped item may call the pool.
    boost::shared_ptr<void> const calling(nullptr, [&](void*) { pool->Post([] {}, 1); });
    pool->Post([token, calling] { ADD_FAILURE(); }, 3'600'000);
    EXPECT_EQ(ran, 0);
    pool->Shutdown();
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_TRUE(pool->IsShutdown());
    for (std::uint32_t const delay : {0u, 1u}) {
        EXPECT_FALSE(pool->Post([] { ADD_FAILURE(); }, delay));
    }
    pool->Suspend(); // has no effect after a shutdown
    pool->Synchronize();
    EXPECT_EQ(ran, 1);
    waiting.join();
}

TEST(WorkQueue, NothingStartsWhileSuspended) {
    Pool const pool = MakePool(2);
    for (int i = 0; i < 200; ++i) {
        std::atomic<bool> isResumed{false};
        pool->Suspend();
        pool->Post([&] { EXPECT_TRUE(isResumed); }, 0);
        std::this_thread::yield();
        isResumed = true;
        pool->Resume();
        pool->WaitUntilResumed();
        pool->Synchronize();
    }
}

TEST(WorkQueue, TheLastReferenceMayBeReleasedOnAWorker) {
    std::promise<void> go;
    static std::promise<void> ended; // whose state the thread may still release after the test
    ended = {};
    std::atomic<int> ran{0};
    Pool pool = MakePool(1);
    pool->Post(
        [pool, isGo = go.get_future().share()] {
            ended.set_value_at_thread_exit();
            isGo.wait();
        },
        0);
    pool->Post([&] { ++ran; }, 0);
    pool->Post([] { ADD_FAILURE(); }, 3'600'000);
    pool.reset();
    go.set_value();
    ended.get_future().wait();
    EXPECT_EQ(ran, 1);
}

TEST(WorkQueue, EveryItemIsReleasedOnceWheneverThePoolIsDestroyed) {
    auto const token = boost::make_shared<std::atomic<int>>(0);
    for (int round = 0; round < 150; ++round) {
        Pool pool = MakePool(round % 3 + 1);
        std::atomic<int> accepted{0};
        *token = 0;
        tests::InThreads(3, [&](unsigned int inThread) {
            bool isAccepted = inThread > 0;
            for (std::uint32_t i = 0; isAccepted && i < 3000; ++i) {
                std::uint32_t const delay = i % 5 == inThread ? i % 3 : 0;
                isAccepted = pool->Post([token, delay] { *token += delay == 0; }, delay);
                accepted += isAccepted && delay == 0;
            }
            for (int i = 0; inThread == 0 && i < round * 10; ++i) {
                std::this_thread::yield();
            }
            pool->Shutdown();
            pool->Synchronize();
        });
        EXPECT_EQ(*token, accepted);
        pool.reset();
        EXPECT_EQ(token.use_count(), 1);
    }
}

TEST(WorkQueue, RunsOnWhenMemoryRunsOut) {
    auto const token = boost::make_shared<int>();
    Pool pool;
    auto const use = [&] {
        pool = MakePool(2);
        EXPECT_TRUE(pool->Post([token] {}, 0));
        EXPECT_TRUE(pool->Post([token] {}, 3'600'000));
        pool->Synchronize();
    };
    auto const end = [&] {
        if (pool != nullptr) {
            EXPECT_TRUE(pool->Post([] {}, 0));
            pool->Synchronize();
            pool->Shutdown();
            pool->Synchronize();
            pool.reset();
        }
        EXPECT_EQ(token.use_count(), 1);
    };
    EXPECT_GT(tests::RefuseEachAllocation(use, end), 8);
    end();
}

} // namespace

} // namespace brindle::threads
