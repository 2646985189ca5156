#include <brindle/glue/GLib.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/DroppedException.h>

#include "tests/support/AllocationFailure.h"
#include "tests/support/RecordingErrorManager.h"
#include "tests/support/SystemCallFilter.h"
#include "threads/src/executors/SharedTimer.h"
#include "threads/src/locks/Gate.h"
#include "threads/src/threads/CurrentThreadPriority.h"

#include <boost/smart_ptr/weak_ptr.hpp>
#include <boost/thread/exceptions.hpp>
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

using namespace brindle::tests;
using namespace brindle::threads;
using Adaptor = boost::shared_ptr<AsyncEventLoopAdaptor>;

namespace {

constexpr std::uint32_t kHour = 60 * 60 * 1000;

/// Runs GLib's loop until the condition holds.
template <typename Condition>
void TurnUntil(Condition inCondition) {
    brindle::glue::GLibLoop const attached;
    while (!inCondition()) {
        g_main_context_iteration(nullptr, TRUE);
    }
}

void InAnotherThread(std::function<void()> const& inFunction) {
    std::thread(inFunction).join();
}

/// From this many milliseconds on, the shared timer sends nothing as long as the result exists.
std::shared_ptr<void> HoldTimer(std::uint32_t inDelay) {
    auto const holds = std::make_shared<Gate>(false), go = std::make_shared<Gate>(false);
    SharedTimer()->Post([holds, go] { holds->Open(), go->Wait(); }, inDelay);
    holds->Wait();
    return {nullptr, [go](void*) { go->Open(); }};
}

/// Counts its calls. If memory has been refused, its destructor shuts the executor down, as a
/// client's may.
struct Counting {
    ~Counting() {
        if (AllocationFailure::HasHappened()) {
            executor.Shutdown();
        }
    }
    void operator()() const { ++*count; }
    std::shared_ptr<int> count;
    AsyncEventLoopExecutor& executor;
};

std::string S_heard;

/// Keeps what is dropped.
void Hear(std::exception_ptr const& inException, char const* inName) {
    try {
        std::rethrow_exception(inException);
    } catch (std::exception const& problem) {
        S_heard += std::string(inName) + ": " + problem.what() + '\n';
    }
    throw 1; // which ends no loop
}

} // namespace

TEST(EventLoop, RunsItemsInOrderOnALaterTurnOrInADrain) {
    Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
    std::string ran;
    auto const post = [&](char inName, std::uint32_t inDelay) {
        return adaptor->Post([&ran, inName] { ran += inName; }, inDelay);
    };
    auto const postOthers = [&](char inName) {
        post('x', kHour), post(inName, 0);
        adaptor->Post([] { throw 1; }, 0);
        EXPECT_TRUE(adaptor->Post({}, 0));
        EXPECT_TRUE(post(static_cast<char>(inName + 1), 0));
    };
    auto const turn = [&] {
        post('4', 0);
        TurnUntil([&] { return ran == "1234"; });
        post('5', 1);
    };
    InAnotherThread([&] { postOthers('1'); });
    adaptor->Post(turn, 0), post('3', 0);
    EXPECT_EQ(ran, "");
    TurnUntil([&] { return ran == "12345"; });
    postOthers('6');
    InAnotherThread([&] {
        EXPECT_THROW(adaptor->Drain(), int);
        EXPECT_EQ(ran, "123456");
        adaptor->Drain();
    });
    EXPECT_EQ(ran, "1234567");
    post('8', 0);
    TurnUntil([&] { return ran == "12345678"; });
}

TEST(EventLoop, ADestroyedAdaptorReleasesItsItemsAndTheLastOneTheTimer) {
    Adaptor adaptor;
    boost::weak_ptr<AsyncThreadedExecutor> timer;
    auto const reset = [&] { adaptor.reset(); };
    std::function<void()> const ways[] = {reset, [&] { InAnotherThread(reset); },
                                          [&] { adaptor->Drain(); }, [] { DispatchMessages(); },
                                          [] { /* with the thread */ }};
    auto const token = std::make_shared<int>(0);
    auto const use = [token] { ++*token; };
    for (int i = 0; i < 10; ++i) {
        Adaptor const other = i < 5 ? AdaptCurrentEventLoopAsExecutor() : Adaptor();
        InAnotherThread([&] {
            adaptor = AdaptCurrentEventLoopAsExecutor();
            timer = SharedTimer();
            InAnotherThread([&] { adaptor->Post(reset, 0); });
            adaptor->Post(use, 1);
            auto const held = HoldTimer(2); // the message waits, the next pump is with the timer
            adaptor->Post(use, 0);
            InAnotherThread([&] { adaptor->Post(use, 0); });
            adaptor->Post(use, kHour);
            EXPECT_EQ(token.use_count(), 6);
            ways[i % 5]();
            EXPECT_EQ(token.use_count(), adaptor == nullptr ? 2 : 6);
        });
        EXPECT_TRUE(adaptor == nullptr || !adaptor->Post(use, 0));
        adaptor.reset();
        EXPECT_EQ(token.use_count(), 2);
        EXPECT_EQ(timer.lock(), other != nullptr ? SharedTimer() : nullptr);
    }
    EXPECT_EQ(*token, 0);
}

TEST(EventLoop, RunsWhatItPostsToItselfWithoutTheTimer) {
    Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
    auto const held = HoldTimer(0);
    int turns = 0;
    adaptor->Post([&] { ++turns, adaptor->Post([&] { ++turns; }, 0); }, 0);
    for (int turn = 1; turn <= 2; ++turn) {
        EXPECT_TRUE(DispatchMessages());
        EXPECT_EQ(turns, turn);
    }
}

TEST(EventLoop, TheTimerReleasesNoItemOfAThreadThatHasEnded) {
    auto const token = std::make_shared<int>();
    Adaptor adaptor;
    InAnotherThread([&] {
        adaptor = AdaptCurrentEventLoopAsExecutor();
        adaptor->Post([token] { ADD_FAILURE(); }, 1);
    });
    HoldTimer(2); // by now it has tried to send the message
    EXPECT_EQ(token.use_count(), 2) << "the item waits for its adaptor";
    adaptor.reset();
    EXPECT_EQ(token.use_count(), 1);
}

TEST(EventLoopExecutor, ANestedLoopLearnsOfTheShutdownAndNeverSpins) {
    auto const executor = CreateAsyncEventLoopExecutor("loop");
    std::atomic<int> ended{0};
    auto const runNestedLoop = [&] {
        pollfd watched{EventLoopDescriptor(), POLLIN, 0};
        do {
            EXPECT_EQ(poll(&watched, 1, -1), 1);
        } while (DispatchMessages());
        EXPECT_EQ(poll(&watched, 1, 0), 0) << "readable though nothing more is handled";
        ++ended;
    };
    executor->Post(runNestedLoop, 0); // runs the next one nested in it
    executor->Post(runNestedLoop, 0);
    Adaptor other;
    auto const shutDown = [&] {
        other = AdaptCurrentEventLoopAsExecutor();
        executor->Shutdown();
        EXPECT_TRUE(other->Post([] { ADD_FAILURE(); }, 0)); // waits behind the quit message
    };
    executor->Post(shutDown, 0);
    executor->Join();
    EXPECT_EQ(ended, 2);
    // A loop that is nested in the final drain learns of it, too.
    auto const drained = CreateAsyncEventLoopExecutor("loop");
    drained->Post([&] { drained->Post(runNestedLoop, 0), drained->Shutdown(); }, 0);
    drained->Join();
    EXPECT_EQ(ended, 3);
}

TEST(EventLoop, ThreadsOfLoweredPriorityDoNotLowerTheTimerOfOthers) {
    auto const expectNormal = [normal = getpriority(PRIO_PROCESS, 0)](auto const& inExecutor) {
        std::promise<void> done;
        auto const check = [&] {
            EXPECT_EQ(getpriority(PRIO_PROCESS, 0), normal);
            EXPECT_EQ(sched_getscheduler(0), SCHED_OTHER);
            done.set_value();
        };
        inExecutor->Post(check, 0);
        done.get_future().wait();
    };
    Adaptor low;
    InAnotherThread([&] {
        SetCurrentThreadPriority(kThreadPriorityIdle);
        low = AdaptCurrentEventLoopAsExecutor();
        if (geteuid() == 0) { // others have no right to raise a thread again
            expectNormal(CreateAsyncEventLoopExecutor("loop"));
            expectNormal(SharedTimer());
        }
    });
    Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
    expectNormal(SharedTimer());
}

TEST(EventLoopExecutor, ShutdownRunsWhatWasAcceptedAndReleasesTheRest) {
    auto const executor = CreateAsyncEventLoopExecutor("loop");
    auto const token = std::make_shared<int>(0);
    auto const use = [token] { ++*token; };
    executor->Post(use, kHour);
    auto const shutDown = [&] {
        auto const held = HoldTimer(0); // so these are left to the final drain
        EXPECT_FALSE(executor->IsShutdown());
        EXPECT_TRUE(executor->IsCurrentThreadExecutorThread());
        executor->Post([] { throw 1; }, 0);
        executor->Post(use, 0);
        executor->Join(), executor->Shutdown();
    };
    executor->Post(shutDown, 0);
    executor->Join();
    EXPECT_EQ(*token, 1);
    EXPECT_EQ(token.use_count(), 2);
    EXPECT_TRUE(executor->IsShutdown());
    EXPECT_FALSE(executor->IsCurrentThreadExecutorThread());
    EXPECT_FALSE(executor->Post(use, 0));
}

TEST(EventLoopExecutor, RunsEachAcceptedItemOnceWhileOthersDrainAndShutDown) {
    for (int round = 0; round < 50; ++round) {
        auto const executor = CreateAsyncEventLoopExecutor("loop");
        auto const token = std::make_shared<int>(0);
        std::atomic<int> accepted{0}, ran{0};
        auto const post = [&] {
            for (std::uint32_t i = 0; i < 200; ++i) {
                accepted += executor->Post([&ran, token] { ++ran; }, 0) ? 1 : 0;
                executor->Post([token] {}, i % 4);
            }
        };
        std::thread one(post), two(post);
        for (int i = 0; i < 20; ++i, executor->Drain()) {
        }
        executor->Shutdown();
        one.join(), two.join(), executor->Join();
        EXPECT_EQ(ran, accepted);
        EXPECT_EQ(token.use_count(), 1);
    }
}

TEST(EventLoopExecutor, WithoutDescriptorsThereIsAReportAndNoLoop) {
    RecordingErrorManager errors;
    InAnotherThread([] {
        // A sanitizer may need other descriptors.
        ASSERT_TRUE(FilterSystemCall(SYS_eventfd2, SECCOMP_RET_ERRNO | EMFILE));
        EXPECT_THROW(static_cast<void>(EventLoopDescriptor()), boost::thread_resource_error);
        EXPECT_TRUE(CreateAsyncEventLoopExecutor("loop")->IsShutdown());
    });
    EXPECT_EQ(errors.codes, (decltype(errors.codes){20, 20}));
}

TEST(EventLoopExecutor, RefusedMemoryLosesNoItemAndNoLoop) {
    auto const token = std::make_shared<int>(0);
    auto executor = CreateAsyncEventLoopExecutor("loop");
    auto const useLoops = [&] {
        Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
        executor = CreateAsyncEventLoopExecutor("loop");
        Counting const use{token, *executor};
        if (!adaptor->Post(use, kHour) || !executor->Post(use, kHour) || !adaptor->Post(use, 0)) {
            throw std::bad_alloc();
        }
        TurnUntil([&] { return *token > 0; });
    };
    auto const endLoop = [&] {
        executor->Shutdown(), executor->Join();
        EXPECT_EQ(token.use_count(), 1);
    };
    InAnotherThread([&] { EXPECT_GT(RefuseEachAllocation(useLoops, endLoop), 20); });
    endLoop();
    EXPECT_EQ(*token, 1);
}

TEST(EventLoop, AnExceptionReachesTheHookUnlessItReachesTheCaller) {
    auto const fail = [] { throw std::runtime_error("failed"); };
    auto installed = std::make_optional<ScopedDroppedExceptionHook>(Hear);
    std::promise<void> arePosted;
    auto const loop = CreateAsyncEventLoopExecutor("loop");
    loop->Post(fail);
    loop->Post([&] { arePosted.get_future().wait(), loop->Shutdown(); }, 0);
    loop->Post(fail, 0); // after the loop has ended, in the final drain
    arePosted.set_value();
    loop->Join();
    EXPECT_EQ(std::exchange(S_heard, {}), "loop: failed\nloop: failed\n");
    auto const adaptor = AdaptCurrentEventLoopAsExecutor();
    adaptor->Post(fail, 0);
    EXPECT_THROW(adaptor->Drain(), std::runtime_error);
    EXPECT_EQ(S_heard, "");
    adaptor->Post(fail, 0);
    DispatchMessages();
    EXPECT_EQ(S_heard, ": failed\n");
    installed.reset();
    EXPECT_EQ(SetDroppedExceptionHook(nullptr), nullptr);
}

TEST(GLibLoop, RunsFunctionsByItsPriorityAndInNestedLoopsAsLongAsItExists) {
    auto attached = std::make_unique<brindle::glue::GLibLoop>(G_PRIORITY_LOW);
    Adaptor const loop = AdaptCurrentEventLoopAsExecutor();
    std::string ran;
    // A source of the application that is ready at the same time.
    auto const idle = [](gpointer ioRan) -> gboolean {
        static_cast<std::string*>(ioRan)->push_back('i');
        return G_SOURCE_REMOVE;
    };
    g_idle_add(idle, &ran);
    auto const runNestedLoop = [&] {
        ran += '(';
        while (ran.back() != '2') { // which only a nested turn can run
            g_main_context_iteration(nullptr, TRUE);
        }
        ran += ')';
    };
    InAnotherThread([&] {
        loop->Post(runNestedLoop, 0);
        loop->Post([&] { ran += '1', throw 1; }, 0);
        loop->Post([&] { ran += '2'; }, 0);
    });
    while (ran.empty() || ran.back() != ')') {
        g_main_context_iteration(nullptr, TRUE);
    }
    EXPECT_EQ(ran, "i(12)");
    attached.reset();
    loop->Post([] { ADD_FAILURE(); }, 0);
    EXPECT_FALSE(g_main_context_iteration(nullptr, FALSE));
}
