#include <brindle/threads/Async.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/Moved.h>
#include <brindle/threads/Progress.h>
#include <brindle/threads/TaskGroup.h>

#include "tests/support/InThreads.h"

#include <boost/smart_ptr/make_shared.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace brindle::threads {

namespace {

boost::shared_ptr<AsyncThreadedExecutor> MakePool(int inThreadCount) {
    return CreateAsyncThreadedExecutor("test", inThreadCount, kThreadPriorityNormal);
}

/// An executor that a client wrote: it releases what it accepts without calling it.
class Forgetful : public AsyncExecutor {
public:
    bool Post(boost::function0<void> const& inFunction, std::uint32_t) override {
        if (isOutOfMemory) {
            throw std::bad_alloc();
        }
        mForgotten.push_back(inFunction);
        return true;
    }
    bool IsCurrentThreadExecutorThread() override { return false; }
    std::int32_t GetThreadCount() override { return 1; }
    std::size_t Count() const { return mForgotten.size(); }
    void Forget() { mForgotten.clear(); }

    bool isOutOfMemory = false;

private:
    std::vector<boost::function0<void>> mForgotten;
};

TEST(TaskGroup, WaitsForFunctionsThatAddFunctionsAndReleasesThem) {
    for (int const workers : {1, 3}) {
        auto const pool = MakePool(workers);
        auto const token = std::make_shared<std::atomic<int>>(0);
        TaskGroup group(pool);
        std::function<void(int)> const split = [&](int inDepth) {
            for (int i = 0; i < 2 && inDepth > 0; ++i) {
                group.Run([&, inDepth,
                           owned = std::make_unique<std::shared_ptr<std::atomic<int>>>(token)] {
                    EXPECT_TRUE(pool->IsCurrentThreadExecutorThread());
                    ++**owned;
                    split(inDepth - 1);
                });
            }
        };
        for (int round = 1; round <= 20; ++round) {
            split(7);
            group.Wait();
            EXPECT_EQ(*token, round * 254);
            EXPECT_EQ(token.use_count(), 1) << "a function outlives Wait";
        }
    }
}

TEST(TaskGroup, AThreadOfTheExecutorThatWaitsDoesTheWorkItself) {
    auto const pool = MakePool(1);
    std::atomic<int> ran{0};
    std::function<void(int)> const split = [&](int inDepth) {
        TaskGroup group(pool);
        for (int i = 0; i < 3 && inDepth > 0; ++i) {
            group.Run([&split, inDepth] { split(inDepth - 1); });
        }
        ++ran;
        group.Wait();
    };
    pool->Post([&] { split(4); }, 0);
    pool->Synchronize();
    EXPECT_EQ(ran, 121);
    TaskGroup onLoop(AdaptCurrentEventLoopAsExecutor());
    onLoop.Run([&] { ran = 0; });
    onLoop.Wait();
    EXPECT_EQ(ran, 0);
    // A function waits for one that it adds, so that only the thread that waits can call that.
    auto const two = MakePool(2);
    for (int round = 0; round < 100; ++round) {
        TaskGroup outer(two);
        outer.Run([&] {
            std::promise<void> begun, added;
            TaskGroup inner(two);
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

TEST(TaskGroup, TheFirstExceptionCancelsTheRestAndIsKept) {
    auto const pool = MakePool(2);
    auto const token = std::make_shared<int>();
    TaskGroup group(pool);
    std::promise<void> begun;
    group.Run([&] {
        begun.set_value();
        while (!group.IsCancelled()) {
        }
        throw 2;
    });
    begun.get_future().wait();
    pool->Suspend();
    group.Run([] { throw std::runtime_error("first"); });
    group.Run([token] { ADD_FAILURE(); });
    pool->Resume();
    for (int i = 0; i < 2; ++i) {
        EXPECT_THROW(group.Wait(), std::runtime_error);
    }
    group.Run([token] { ADD_FAILURE(); });
    EXPECT_EQ(token.use_count(), 1);
}

TEST(TaskGroup, CancelReleasesWhatWaitsAndTellsWhatRuns) {
    auto const pool = MakePool(1);
    auto const token = std::make_shared<int>();
    TaskGroup group(pool), other(pool);
    std::promise<void> begun;
    group.Run([&, cancel = group.Token()] {
        begun.set_value();
        for (;;) {
            cancel.ThrowIfCancelled();
        }
    });
    begun.get_future().wait();
    group.Run([token] { ADD_FAILURE(); });
    TaskGroup(pool).Run([token] { ADD_FAILURE(); });
    EXPECT_EQ(token.use_count(), 2) << "the destructor waits for what has not begun";
    group.Cancel();
    EXPECT_EQ(token.use_count(), 1) << "though no worker has looked at it";
    group.Wait();
    other.Run([] { throw cancelled_exception(); }); // nobody cancelled this one
    EXPECT_THROW(other.Wait(), cancelled_exception);
    EXPECT_FALSE(CancelToken().IsCancelled());
}

TEST(TaskGroup, MayBeDestroyedByItsOwnFunctionsAndCompletions) {
    auto const pool = MakePool(2);
    for (int way = 0; way < 3; ++way) {
        for (int round = 0; round < 100; ++round) {
            auto const other = std::make_shared<std::atomic<int>>(0);
            auto const group = std::make_shared<std::unique_ptr<TaskGroup>>(new TaskGroup(pool));
            std::promise<void> begun, destroyed;
            auto const isBegun = begun.get_future().share();
            auto const destroy = [&, group, other, isBegun] {
                isBegun.wait();
                group->reset();
                EXPECT_EQ(*other % 2, 0) << "did not wait for the other function";
                destroyed.set_value();
            };
            TaskGroup& made = **group;
            made.Run([other] { ++*other, std::this_thread::yield(), ++*other; });
            switch (way) {
            case 0: // by a function that runs
                made.Run(destroy);
                break;
            case 1: // by a function that is released, after another one has failed
                made.Run([isBegun = isBegun] { isBegun.wait(), throw 1; });
                made.Run([kept = std::shared_ptr<void>(nullptr, [&](void*) { destroy(); })] {});
                break;
            default:
                made.WhenDone(pool, [destroy](std::exception_ptr) { destroy(); });
            }
            begun.set_value();
            destroyed.get_future().wait();
            pool->Synchronize();
        }
    }
}

TEST(TaskGroup, SaysWhatCannotRunOrWait) {
    auto const pool = MakePool(1);
    auto const token = std::make_shared<int>();
    TaskGroup group(pool);
    pool->Shutdown();
    EXPECT_THROW(group.Run([token] {}), task_refused_exception);
    EXPECT_THROW(static_cast<void>(Async(pool, [token] {})), task_refused_exception);
    EXPECT_EQ(token.use_count(), 1);
    group.Wait();
    auto const forgetful = boost::make_shared<Forgetful>();
    TaskGroup forgotten(forgetful);
    forgotten.Run([token] { ADD_FAILURE(); });
    std::future<void> const never = Async(forgetful, [token] { ADD_FAILURE(); });
    forgetful->Post(Moved([owned = std::make_unique<std::shared_ptr<int>>(token)] {}), 0);
    EXPECT_EQ(token.use_count(), 4);
    forgetful->Forget();
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_THROW(forgotten.Wait(), task_refused_exception);
    TaskGroup unposted(forgetful);
    forgetful->isOutOfMemory = true;
    EXPECT_THROW(unposted.Run([token] {}), std::bad_alloc);
    EXPECT_EQ(token.use_count(), 1);
    unposted.Wait();
    EXPECT_EQ(never.wait_for(std::chrono::seconds(0)), std::future_status::ready);
    EXPECT_THROW(TaskGroup(nullptr), std::invalid_argument);
    auto const other = MakePool(1);
    TaskGroup waiting(other);
    waiting.Run([&] { waiting.Wait(); });
    EXPECT_THROW(waiting.Wait(), std::logic_error);
}

TEST(TaskGroup, CompletesOnceOnTheLoopUnlessItIsDestroyedBefore) {
    auto const loop = AdaptCurrentEventLoopAsExecutor();
    auto const pool = MakePool(2);
    std::string told;
    auto const tell = [&](std::exception_ptr const& inFailure) {
        told += inFailure == nullptr ? 'd' : 'f';
    };
    for (int i = 0; i < 100; ++i) {
        told.clear();
        TaskGroup group(pool), failed(pool);
        std::promise<void> go;
        group.Run([&] { go.get_future().wait(), group.Run([] {}); });
        failed.Run([] { throw 1; });
        group.WhenDone(loop, tell);
        loop->Drain();
        EXPECT_EQ(told, "");
        go.set_value();
        group.Wait();
        pool->Synchronize(); // the worker has posted it
        loop->Drain();
        EXPECT_EQ(told, "d");
        EXPECT_THROW(failed.Wait(), int);
        failed.WhenDone(loop, tell);
        TaskGroup(pool).WhenDone(loop, [](std::exception_ptr) { ADD_FAILURE(); });
        loop->Drain();
        EXPECT_EQ(told, "df");
    }
}

TEST(TaskGroup, RunsEachFunctionOnceWhileOthersCancelWaitAndShutDown) {
    for (unsigned int round = 0; round < 200; ++round) {
        auto const pool = MakePool(2);
        auto const token = std::make_shared<std::atomic<int>>(0);
        {
            TaskGroup group(pool);
            std::atomic<int> refused{0};
            tests::InThreads(3, [&](unsigned int inThread) {
                for (int i = 0; i < 50; ++i) {
                    try {
                        group.Run([token] { ++*token; });
                    } catch (task_refused_exception const&) {
                        ++refused;
                    }
                }
                if (inThread == 0 && round % 2 == 1) {
                    pool->Shutdown();
                } else if (inThread == 1 && round % 4 > 1) {
                    group.Cancel();
                }
                group.Wait();
            });
            if (!group.IsCancelled()) {
                EXPECT_EQ(*token + refused, 150);
            }
        }
        EXPECT_EQ(token.use_count(), 1);
    }
}

TEST(Async, GivesResultsAndExceptionsAndReleasesTheFunctionFirst) {
    auto const pool = MakePool(1);
    auto const token = std::make_shared<int>(7);
    std::future<std::unique_ptr<int>> result =
        Async(pool, [owned = std::make_unique<std::shared_ptr<int>>(token)] {
            return std::make_unique<int>(**owned);
        });
    EXPECT_EQ(*result.get(), 7);
    EXPECT_EQ(token.use_count(), 1);
    std::future<int&> reference = Async(pool, [&]() -> int& { return *token; });
    EXPECT_EQ(&reference.get(), token.get());
    auto failed = Async(pool, [token] { throw std::runtime_error("kept"); });
    EXPECT_THROW(failed.get(), std::runtime_error);
    EXPECT_EQ(token.use_count(), 1);
}

TEST(Progress, ShowsTheLatestValueWithOneCall) {
    auto const loop = AdaptCurrentEventLoopAsExecutor();
    std::vector<int> shown;
    auto progress =
        std::make_unique<Progress<int>>(loop, [&](int inValue) { shown.push_back(inValue); });
    std::thread([&] {
        for (int i = 1; i <= 1000; ++i) {
            progress->Set(i);
        }
    }).join();
    loop->Drain();
    EXPECT_EQ(shown, std::vector<int>{1000});
    progress->Set(1001);
    loop->Drain();
    progress->Set(1002);
    progress.reset();
    loop->Drain();
    EXPECT_EQ(shown, (std::vector<int>{1000, 1001}));
    auto const busy = boost::make_shared<Forgetful>();
    Progress<int> toBusy(busy, [](int) {});
    toBusy.Set(1), toBusy.Set(2);
    EXPECT_EQ(busy->Count(), 1U);
}

TEST(Progress, NoCallOutlivesItWhileOthersSetValues) {
    auto const loop = CreateAsyncEventLoopExecutor("loop");
    for (int round = 0; round < 50; ++round) {
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
            round > 0 ? begun.get_future().wait() : void();
        }
        EXPECT_FALSE(isInside);
    }
    // Destroyed by its own call, which the values of another thread keep alive.
    std::promise<void> done;
    std::unique_ptr<Progress<int>> progress;
    progress =
        std::make_unique<Progress<int>>(loop, [&, owned = std::make_unique<int>(1)](int inValue) {
            progress.reset();
            EXPECT_EQ(inValue, *owned);
            done.set_value();
        });
    progress->Set(1);
    done.get_future().wait();
}

} // namespace

} // namespace brindle::threads
