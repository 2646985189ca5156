#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/DroppedException.h>
#include <brindle/threads/EventLoop.h>
#include <brindle/threads/EventLoopWakeUp.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace brindle::threads;

namespace {

/// A loop of a toolkit without descriptors: it dispatches when it has got an event, and never else.
class ForeignLoop {
public:
    void PostEvent() {
        std::lock_guard<std::mutex> const lock(mMutex);
        ++mEvents;
        mHasEvents.notify_one();
    }
    /// Handles one event. False if there is none for a minute: a wake-up was lost.
    [[nodiscard]] bool Turn() {
        std::unique_lock<std::mutex> lock(mMutex);
        if (!mHasEvents.wait_for(lock, std::chrono::minutes(1), [&] { return mEvents > 0; })) {
            return false;
        }
        --mEvents;
        lock.unlock();
        DispatchMessages();
        return true;
    }
    int Events() {
        std::lock_guard<std::mutex> const lock(mMutex);
        return mEvents;
    }

private:
    std::mutex mMutex;
    std::condition_variable mHasEvents;
    int mEvents = 0;
};

std::atomic<int> S_dropped{0};

} // namespace

TEST(EventLoopWakeUp, NoneIsLostWhileThreadsPostAndItIsSetAndCleared) {
    constexpr int kEach = 4000, kThreads = 3;
    ForeignLoop foreign;
    auto const loop = AdaptCurrentEventLoopAsExecutor();
    std::atomic<bool> isSet{false}, isCalledUnset{false};
    std::optional<EventLoopWakeUp> wakeUp;
    auto const set = [&] {
        isSet = true;
        wakeUp.emplace([&] {
            foreign.PostEvent();
            std::this_thread::yield();
            isCalledUnset = isCalledUnset || !isSet;
        });
    };
    auto const clear = [&] {
        wakeUp.reset();
        isSet = false;
        std::this_thread::yield();
    };
    int ran = 0;
    std::vector<std::thread> posters;
    for (int thread = 0; thread < kThreads; ++thread) {
        posters.emplace_back([&] {
            for (int i = 0; i < kEach; ++i) {
                loop->Post([&] { ++ran; }, i % 1000 == 0 ? 1 : 0);
                i % 64 == 0 ? std::this_thread::yield() : void();
            }
        });
    }
    for (int turn = 0; ran < kEach * kThreads; ++turn) {
        if (turn % 5 == 0) {
            clear(), set();
        }
        if (!foreign.Turn()) {
            ADD_FAILURE() << "a wake-up was lost after " << ran << " functions";
            break;
        }
    }
    for (auto& poster : posters) {
        poster.join();
    }
    clear();
    EXPECT_FALSE(isCalledUnset);
}

TEST(EventLoopWakeUp, ManyPostsShareACallAndNestedLoopsAreWoken) {
    ForeignLoop foreign;
    EventLoopWakeUp const wakeUp([&] { foreign.PostEvent(); });
    EXPECT_EQ(foreign.Events(), 1) << "for messages that waited before";
    EXPECT_TRUE(foreign.Turn());
    auto const loop = AdaptCurrentEventLoopAsExecutor();
    int ran = 0;
    for (int i = 0; i < 100; ++i) {
        loop->Post([&] { ++ran; }, 0);
    }
    EXPECT_EQ(foreign.Events(), 1);
    while (foreign.Events() > 0) {
        EXPECT_TRUE(foreign.Turn());
    }
    EXPECT_EQ(ran, 100);
    // One function is left over by the turn that runs the nested loop, one comes during it.
    auto const runNestedLoop = [&] {
        EXPECT_TRUE(foreign.Turn());
        EXPECT_EQ(ran, 101);
        loop->Post([&] { ++ran; }, 0);
        EXPECT_TRUE(foreign.Turn());
        EXPECT_EQ(ran, 102);
    };
    loop->Post(runNestedLoop, 0);
    loop->Post([&] { ++ran; }, 0);
    EXPECT_TRUE(foreign.Turn());
    EXPECT_EQ(ran, 102);
}

TEST(EventLoopWakeUp, ALoopOnTheThreadOfAnExecutorLearnsOfItsShutdown) {
    auto const executor = CreateAsyncEventLoopExecutor("loop");
    auto const runNestedLoop = [&] {
        int calls = 0;
        EventLoopWakeUp const wakeUp([&] { ++calls; });
        EXPECT_TRUE(DispatchMessages());
        executor->Shutdown();
        EXPECT_EQ(calls, 2);
        EXPECT_FALSE(DispatchMessages());
    };
    executor->Post(runNestedLoop, 0);
    executor->Join();
}

TEST(EventLoopWakeUp, MisuseAndFailureHarmNobody) {
    std::optional<EventLoopWakeUp> wakeUp;
    auto const loop = AdaptCurrentEventLoopAsExecutor();
    int calls = 0;
    auto const use = [&] {
        ++calls;
        if (calls == 1) {
            throw std::runtime_error("the queue of events is full");
        }
        loop->Post([] {}, 0); // called itself by a post
        if (calls == 3) {
            wakeUp.reset();
            EXPECT_EQ(calls, 3) << "the function still exists";
        }
    };
    S_dropped = 0;
    SetDroppedExceptionHook([](std::exception_ptr const&, char const*) { ++S_dropped; });
    wakeUp.emplace(use);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(S_dropped, 1);
    loop->Post([] {}, 0);
    EXPECT_EQ(calls, 2) << "the call that failed does not count";
    EXPECT_THROW(EventLoopWakeUp{use}, std::logic_error);
    EXPECT_THROW(EventLoopWakeUp{boost::function<void()>()}, boost::bad_function_call);
    for (int turn = 0; turn < 2; ++turn) {
        DispatchMessages();
        loop->Post([] {}, 0);
        EXPECT_EQ(calls, 3);
    }
    SetDroppedExceptionHook(nullptr);
}
