#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/ForEach.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace brindle::threads {

namespace {

using Executor = boost::shared_ptr<AsyncExecutor>;

boost::shared_ptr<AsyncThreadedExecutor> MakePool(int inThreadCount) {
    return CreateAsyncThreadedExecutor("test", inThreadCount, kThreadPriorityNormal);
}

/// Takes a random time, mostly none.
void TakeTime(std::size_t inIndex) {
    std::minstd_rand random(static_cast<unsigned>(inIndex + 1));
    random.discard(2);
    for (auto spins = random() % 8 == 0 ? random() % 4000 : 0; spins > 0; --spins) {
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }
}

struct NamedExecutor {
    char const* name;
    Executor executor;
};

std::vector<NamedExecutor> Executors() {
    auto const shutDown = MakePool(1);
    shutDown->Shutdown();
    auto const suspended = MakePool(1);
    suspended->Suspend();
    return {{"none", nullptr},        {"no worker", MakePool(0)}, {"one worker", MakePool(1)},
            {"workers", MakePool(3)}, {"shut down", shutDown},    {"suspended", suspended}};
}

TEST(ForEach, CallsEveryIndexOnceAndKeepsTheOrderOfResults) {
    for (auto const& [name, executor] : Executors()) {
        SCOPED_TRACE(name);
        for (std::size_t const count : std::initializer_list<std::size_t>{0, 1, 2, 1000, 5000}) {
            std::vector<std::atomic<int>> calls(count);
            auto const results = ForEach(executor, count, [&](std::size_t inIndex) {
                TakeTime(inIndex);
                ++calls[inIndex];
                return inIndex;
            });
            EXPECT_EQ(std::count(calls.begin(), calls.end(), 1), static_cast<long>(count));
            std::vector<bool> const odd =
                ForEach(executor, count, [](std::size_t inIndex) { return inIndex % 2 == 1; });
            for (std::size_t i = 0; i < count; ++i) {
                EXPECT_EQ(results[i], i);
                EXPECT_EQ(odd[i], i % 2 == 1);
            }
        }
    }
}

TEST(ForEach, DeliversInOrderOnTheCallingThreadAndNotTooFarBehind) {
    for (auto const& [name, executor] : Executors()) {
        SCOPED_TRACE(name);
        for (std::size_t const mostAhead :
             std::initializer_list<std::size_t>{0, 1, 2, 7, 256, 10'000}) {
            constexpr std::size_t kCount = 700;
            std::atomic<std::size_t> delivered{0};
            auto const compute = [&](std::size_t inIndex) {
                EXPECT_LT(inIndex, delivered + std::max<std::size_t>(mostAhead, 1));
                TakeTime(inIndex);
                return std::make_unique<std::size_t>(inIndex);
            };
            auto const deliver = [&, self = std::this_thread::get_id()](
                                     std::size_t inIndex, std::unique_ptr<std::size_t> inResult) {
                EXPECT_EQ(std::this_thread::get_id(), self);
                EXPECT_EQ(inIndex, delivered);
                EXPECT_EQ(*inResult, delivered);
                TakeTime(inIndex + kCount);
                ++delivered;
            };
            ForEach(executor, kCount, compute, deliver, mostAhead);
            EXPECT_EQ(delivered, kCount);
        }
    }
}

TEST(ForEach, TheFirstExceptionEndsTheRunAfterTheCallsInProgress) {
    auto const pool = MakePool(2);
    for (std::size_t const at : std::initializer_list<std::size_t>{0, 1, 50, 999}) {
        for (bool const isDelivering : {false, true}) {
            std::size_t next = 0;
            auto const fail = [at](std::size_t inIndex) {
                if (inIndex == at) {
                    throw std::runtime_error("at an index");
                }
            };
            auto const compute = [&](std::size_t inIndex) {
                TakeTime(inIndex);
                isDelivering ? void() : fail(inIndex);
            };
            auto const deliver = [&](std::size_t inIndex) {
                EXPECT_EQ(inIndex, next);
                isDelivering ? fail(inIndex) : void();
                ++next;
            };
            EXPECT_THROW(ForEach(pool, 1000, compute, deliver), std::runtime_error);
            EXPECT_LE(next, at);
        }
    }
    for (int round = 0; round < 50; ++round) {
        std::promise<void> begun;
        std::atomic<bool> isInside{false};
        auto const compute = [&](std::size_t inIndex) {
            if (inIndex == 0) {
                begun.get_future().wait();
                throw 1;
            }
            isInside = true;
            begun.set_value();
            std::this_thread::sleep_for(std::chrono::microseconds(50));
            isInside = false;
        };
        EXPECT_THROW(ForEach(pool, 2, compute), int);
        EXPECT_FALSE(isInside);
    }
    // Functions that have not begun do not begin.
    std::atomic<std::size_t> calls{0};
    EXPECT_THROW(ForEach(pool, 1'000'000'000, [&](std::size_t) { ++calls, throw 1; }), int);
    EXPECT_LE(calls, 3U);
}

TEST(ForEach, NestsOnWorkersThatAreAllBusy) {
    for (int const workers : {1, 2}) {
        auto const pool = MakePool(workers);
        std::atomic<int> calls{0};
        ForEach(pool, 20, [&](std::size_t) {
            ForEach(pool, 20, [&](std::size_t) {
                auto const sum = ForEach(pool, 20, [](std::size_t inIndex) { return inIndex; });
                calls += sum.back() == 19 ? 1 : 0;
            });
        });
        EXPECT_EQ(calls, 400);
    }
}

TEST(ForEach, UsesTheWorkers) {
    auto const pool = MakePool(2);
    std::promise<void> all;
    std::atomic<int> inside{0};
    auto const isAll = all.get_future().share();
    // Three calls that wait for one another need three threads.
    ForEach(pool, 3, [&](std::size_t) {
        if (++inside == 3) {
            all.set_value();
        }
        isAll.wait();
    });
    // They come back after they have left because there was no room for results.
    for (int round = 0; round < 50; ++round) {
        std::vector<std::promise<void>> computed(33);
        computed[32].set_value();
        ForEach(
            pool, 32, [&](std::size_t inIndex) { computed[inIndex].set_value(); },
            [&](std::size_t inIndex) { computed[inIndex + 1].get_future().wait(); }, 2);
    }
}

} // namespace

} // namespace brindle::threads
