#include <brindle/threads/Async.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/ForEach.h>
#include <brindle/threads/Moved.h>
#include <brindle/threads/Progress.h>
#include <brindle/threads/TaskGroup.h>

#include "tests/support/InThreads.h"
#include "tests/threads/MakePool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
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

using Token = std::shared_ptr<std::atomic<int>>;

/// Functions own copies of the token, none of which outlives the test.
class TaskGroupTest : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(mToken.use_count(), 1); }

    /// A function that must not be called, and cannot be copied.
    auto Never() const {
        return [owned = std::make_unique<Token>(mToken)] { ADD_FAILURE(); };
    }

    Token const mToken = std::make_shared<std::atomic<int>>(0);
    boost::shared_ptr<AsyncThreadedExecutor> const mPool = MakePool(2);
    boost::shared_ptr<AsyncEventLoopAdaptor> const mLoop = AdaptCurrentEventLoopAsExecutor();
};

/// An executor that a client wrote: it releases what it accepts without calling it.
class Forgetful : public AsyncExecutor {
public:
    bool Post(boost::function0<void> const& inFunction, std::uint32_t) override {
        isOutOfMemory ? throw std::bad_alloc() : forgotten.push_back(inFunction);
        return true;
    }
    bool IsCurrentThreadExecutorThread() override { return false; }
    std::int32_t GetThreadCount() override { return 1; }

    bool isOutOfMemory = false;
    std::vector<boost::function0<void>> forgotten;
};

TEST_F(TaskGroupTest, AThreadOfTheExecutorThatWaitsDoesTheWorkItself) {
    auto const one = MakePool(1);
    std::function<void(int)> const split = [&](int inDepth) {
        TaskGroup group(one);
        for (int i = 0; i < 3 && inDepth > 0; ++i) {
            group.Run([&split, inDepth] { split(inDepth - 1); });
        }
        ++*mToken;
        group.Wait();
    };
    one->Post([&] { split(4); }, 0);
    one->Synchronize();
    EXPECT_EQ(*mToken, 121);
    TaskGroup onLoop(mLoop);
    onLoop.Run([&] { *mToken = 0; });
    onLoop.Wait();
    EXPECT_EQ(*mToken, 0);
    // A function waits for one that it adds, so that only the thread that waits can call that.
    for (int round = 0; round < 100; ++round) {
        TaskGroup outer(mPool);
        outer.Run([&] {
            std::promise<void> begun, added;
            TaskGroup inner(mPool);
            inner.Run([&] {
                begun.set_value();
                std::this_thread::yield();
                inner.Run([&] { added.set_value(); });
                added.get_future().wait();
            });
            begun.get_future().wait();
            inner.Wait();
        });
        outer.Wait();
    }
}

TEST_F(TaskGroupTest, TheFirstExceptionCancelsTheRestAndIsKept) {
    TaskGroup group(mPool), other(mPool);
    group.Run([&] {
        while (!group.IsCancelled()) {
        }
        throw 2;
    });
    group.Run([] { throw std::runtime_error("first"); });
    group.Run(Never());
    for (int i = 0; i < 2; ++i) {
        EXPECT_THROW(group.Wait(), std::runtime_error);
    }
    group.Run(Never());
    other.Run([] { throw cancelled_exception(); }); // nobody cancelled this one
    EXPECT_THROW(other.Wait(), cancelled_exception);
}

TEST_F(TaskGroupTest, CancelReleasesWhatWaitsAndTellsWhatRuns) {
    auto const pool = MakePool(1);
    TaskGroup group(pool);
    group.Run([cancel = group.Token()] {
        for (;;) {
            cancel.ThrowIfCancelled();
        }
    });
    TaskGroup(pool).Run(Never()); // whose destructor does not wait for what has not begun
    group.Run(Never());
    EXPECT_EQ(mToken.use_count(), 2);
    group.Cancel();
    EXPECT_EQ(mToken.use_count(), 1) << "though no worker has looked at it";
    group.Wait();
    EXPECT_FALSE(CancelToken().IsCancelled());
}

TEST_F(TaskGroupTest, MayBeDestroyedByItsOwnFunctionsAndCompletions) {
    for (int round = 0; round < 300; ++round) {
        auto const group = std::make_shared<std::unique_ptr<TaskGroup>>(new TaskGroup(mPool));
        std::promise<void> begun, destroyed;
        auto const isBegun = begun.get_future().share();
        auto const destroy = [&, group, isBegun] {
            isBegun.wait();
            group->reset();
            EXPECT_EQ(*mToken % 2, 0) << "did not wait for the other function";
            destroyed.set_value();
        };
        TaskGroup& made = **group;
        made.Run([token = mToken] { ++*token, std::this_thread::yield(), ++*token; });
        if (round % 3 == 0) {
            made.Run(destroy);
        } else if (round % 3 == 1) { // when a function is released, after another one has failed
            made.Run([isBegun] { isBegun.wait(), throw 1; });
            made.Run([kept = std::shared_ptr<void>(nullptr, [&](void*) { destroy(); })] {});
        } else {
            made.WhenDone(mPool, [destroy](std::exception_ptr) { destroy(); });
        }
        begun.set_value();
        destroyed.get_future().wait();
        mPool->Synchronize();
    }
}

TEST_F(TaskGroupTest, SaysWhatCannotRunOrWait) {
    EXPECT_THROW(TaskGroup(nullptr), std::invalid_argument);
    TaskGroup waiting(mPool);
    waiting.Run([&] { waiting.Wait(); });
    EXPECT_THROW(waiting.Wait(), std::logic_error);
    TaskGroup refused(mPool);
    mPool->Shutdown();
    EXPECT_THROW(refused.Run(Never()), task_refused_exception);
    EXPECT_THROW(static_cast<void>(Async(mPool, Never())), task_refused_exception);
    refused.Wait();
    auto const forgetful = boost::make_shared<Forgetful>();
    TaskGroup forgotten(forgetful), unposted(forgetful);
    forgotten.Run(Never());
    std::future<void> const never = Async(forgetful, Never());
    forgetful->Post(Moved(Never()), 0);
    EXPECT_EQ(mToken.use_count(), 4);
    forgetful->forgotten.clear();
    EXPECT_EQ(mToken.use_count(), 1);
    EXPECT_THROW(forgotten.Wait(), task_refused_exception);
    EXPECT_EQ(never.wait_for(std::chrono::seconds(0)), std::future_status::ready);
    forgetful->isOutOfMemory = true;
    EXPECT_THROW(unposted.Run(Never()), std::bad_alloc);
    unposted.Wait();
}

TEST_F(TaskGroupTest, CompletesOnceOnTheLoopUnlessItIsDestroyedBefore) {
    std::string told;
    auto const tell = [&](std::exception_ptr const& inFailure) {
        told += inFailure == nullptr ? 'd' : 'f';
    };
    for (int i = 0; i < 100; ++i) {
        told.clear();
        TaskGroup group(mPool), failed(mPool);
        std::promise<void> go;
        group.Run([&] { go.get_future().wait(), group.Run([] {}); });
        group.WhenDone(mLoop, tell);
        mLoop->Drain();
        EXPECT_EQ(told, "");
        go.set_value();
        failed.Run([] { throw 1; });
        group.Wait();
        mPool->Synchronize(); // a worker has posted it
        mLoop->Drain();
        EXPECT_EQ(told, "d");
        failed.WhenDone(mLoop, tell);
        TaskGroup(mPool).WhenDone(mLoop, [](std::exception_ptr) { ADD_FAILURE(); });
        mLoop->Drain();
        EXPECT_EQ(told, "df");
    }
}

TEST_F(TaskGroupTest, RunsEachFunctionOnceWhileOthersAddCancelWaitAndShutDown) {
    for (unsigned int round = 0; round < 200; ++round) {
        auto const pool = MakePool(2);
        TaskGroup group(pool);
        std::atomic<int> refused{0};
        std::function<void(int)> const split = [&](int inDepth) {
            for (int i = 0; i < 2 && inDepth > 0; ++i) {
                try {
                    group.Run([&, inDepth, owned = std::make_unique<Token>(mToken)] {
                        EXPECT_TRUE(pool->IsCurrentThreadExecutorThread());
                        ++**owned;
                        split(inDepth - 1);
                    });
                } catch (task_refused_exception const&) {
                    refused += (1 << inDepth) - 1;
                }
            }
        };
        *mToken = 0;
        tests::InThreads(3, [&](unsigned int inThread) {
            split(5);
            if (inThread == 0 && round % 2 == 1) {
                pool->Shutdown();
            } else if (inThread == 1 && round % 4 > 1) {
                group.Cancel();
            }
            group.Wait();
        });
        EXPECT_EQ(mToken.use_count(), 1) << "a function outlives Wait";
        EXPECT_TRUE(group.IsCancelled() || *mToken + refused == 186);
    }
}

TEST_F(TaskGroupTest, AsyncGivesResultsAndExceptionsAndReleasesTheFunctionFirst) {
    auto result = Async(
        mPool, [owned = std::make_unique<Token>(mToken)] { return std::make_unique<int>(7); });
    EXPECT_EQ(*result.get(), 7);
    EXPECT_EQ(mToken.use_count(), 1);
    auto reference = Async(mPool, [&]() -> Token const& { return mToken; });
    EXPECT_EQ(&reference.get(), &mToken);
    auto failed = Async(mPool, [token = mToken] { throw std::runtime_error("kept"); });
    EXPECT_THROW(failed.get(), std::runtime_error);
}

TEST(Progress, ShowsTheLatestValueWithOneCall) {
    auto const loop = AdaptCurrentEventLoopAsExecutor();
    std::vector<int> shown;
    auto const show = [&](int inValue) { shown.push_back(inValue); };
    auto progress = std::make_unique<Progress<int>>(loop, show);
    for (int i = 0; i < 3000; ++i) {
        progress->Set(i);
        i == 1000 || i == 2000 ? loop->Drain() : void();
    }
    progress.reset();
    loop->Drain();
    EXPECT_EQ(shown, (std::vector<int>{1000, 2000}));
    auto const busy = boost::make_shared<Forgetful>();
    Progress<int> toBusy(busy, show);
    toBusy.Set(1), toBusy.Set(2);
    EXPECT_EQ(busy->forgotten.size(), 1U);
}

TEST(Progress, NoCallOutlivesItWhileOthersSetValues) {
    auto const loop = CreateAsyncEventLoopExecutor("loop");
    for (int round = 1; round < 50; ++round) {
        std::atomic<bool> isInside{false};
        std::promise<void> begun;
        {
            std::string shown;
            Progress<std::string> progress(loop, [&](std::string inValue) {
                isInside = true;
                shown.empty() ? begun.set_value() : void();
                std::this_thread::sleep_for(std::chrono::microseconds(50));
                EXPECT_GT(inValue, shown);
                shown = std::move(inValue);
                isInside = false;
            });
            for (int i = 0; i < round; ++i) {
                progress.Set(std::string(30, static_cast<char>('A' + i)));
            }
            begun.get_future().wait();
        }
        EXPECT_FALSE(isInside);
    }
    // Destroyed by its own call, which the values of another thread keep alive.
    std::promise<void> done;
    std::unique_ptr<Progress<int>> progress;
    auto const destroy = [&, owned = std::make_shared<int>(1)](int inValue) {
        progress.reset();
        EXPECT_EQ(inValue, *owned);
        done.set_value();
    };
    progress = std::make_unique<Progress<int>>(loop, destroy);
    progress->Set(1);
    done.get_future().wait();
}

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
