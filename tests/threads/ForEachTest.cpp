#include <brindle/threads/ForEach.h>

#include "tests/threads/MakePool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace brindle::threads {

namespace {

using Executor = boost::shared_ptr<AsyncExecutor>;
using Numbers = std::initializer_list<std::size_t>;

/// Takes a random time, mostly none.
void TakeTime(std::size_t inIndex) {
    std::minstd_rand random(static_cast<unsigned>(inIndex + 1));
    random.discard(2);
    for (auto spins = random() % 8 == 0 ? random() % 4000 : 0; spins > 0; --spins) {
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }
}

/// By name.
std::map<std::string, Executor> Executors() {
    auto const shutDown = MakePool(1), suspended = MakePool(1);
    shutDown->Shutdown();
    suspended->Suspend();
    return {{"none", nullptr},        {"no worker", MakePool(0)}, {"one worker", MakePool(1)},
            {"workers", MakePool(3)}, {"shut down", shutDown},    {"suspended", suspended}};
}

TEST(ForEach, CallsEveryIndexOnceAndKeepsTheOrderOfResults) {
    for (auto const& [name, executor] : Executors()) {
        SCOPED_TRACE(name);
        for (std::size_t const count : Numbers{0, 1, 2, 5000}) {
            std::atomic<std::size_t> calls{0};
            auto const results = ForEach(executor, count, [&](std::size_t inIndex) {
                TakeTime(inIndex);
                ++calls;
                return inIndex + 1;
            });
            std::vector<bool> const odd =
                ForEach(executor, count, [](std::size_t inIndex) { return inIndex % 2 == 1; });
            EXPECT_EQ(calls, count);
            for (std::size_t i = 0; i < count; ++i) {
                EXPECT_EQ(results[i], i + 1);
                EXPECT_EQ(odd[i], i % 2 == 1);
            }
        }
    }
}

TEST(ForEach, DeliversInOrderOnTheCallingThreadAndNotTooFarBehind) {
    constexpr std::size_t kCount = 700;
    for (auto const& [name, executor] : Executors()) {
        SCOPED_TRACE(name);
        for (std::size_t const mostAhead : Numbers{0, 1, 2, 7, 256, 10'000}) {
            std::atomic<std::size_t> delivered{0};
            auto const compute = [&](std::size_t inIndex) {
                EXPECT_LT(inIndex, delivered + std::max<std::size_t>(mostAhead, 1));
                TakeTime(inIndex);
                return std::make_unique<std::size_t>(inIndex);
            };
            auto const deliver = [&, self = std::this_thread::get_id()](std::size_t inIndex,
                                                                        auto inResult) {
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
    for (std::size_t round = 0; round < 200; ++round) {
        bool const isDelivering = round % 2 == 1;
        std::size_t next = 0;
        auto const work = [&](bool inMayFail, std::size_t inIndex) {
            if (inMayFail && inIndex == round / 2) {
                throw std::runtime_error("at an index");
            }
            TakeTime(inIndex);
        };
        auto const compute = [&](std::size_t inIndex) { work(!isDelivering, inIndex); };
        auto const deliver = [&](std::size_t inIndex) {
            EXPECT_EQ(inIndex, next++);
            work(isDelivering, inIndex);
        };
        EXPECT_THROW(ForEach(pool, 1'000'000'000, compute, deliver), std::runtime_error);
    }
    std::promise<void> begun;
    std::atomic<bool> hasReturned{false};
    auto const compute = [&](std::size_t inIndex) {
        if (inIndex == 0) {
            begun.get_future().wait();
            throw 1;
        }
        begun.set_value();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        hasReturned = true;
    };
    EXPECT_THROW(ForEach(pool, 2, compute), int);
    EXPECT_TRUE(hasReturned);
}

TEST(ForEach, UsesTheWorkersAndNestsWhenTheyAreBusy) {
    auto const pool = MakePool(2);
    std::promise<void> all;
    std::atomic<int> inside{0}, calls{0};
    // Three calls that wait for one another need three threads.
    ForEach(pool, 3, [&, isAll = all.get_future().share()](std::size_t) {
        ++inside == 3 ? all.set_value() : void();
        isAll.wait();
        ForEach(pool, 20, [&](std::size_t) { ForEach(pool, 20, [&](std::size_t) { ++calls; }); });
    });
    EXPECT_EQ(calls, 1200);
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
