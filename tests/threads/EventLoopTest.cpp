#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/EventLoop.h>

#include "tests/RecordingErrorManager.h"
#include "threads/src/Gate.h"
#include "threads/src/SharedTimer.h"

#include <boost/smart_ptr/weak_ptr.hpp>
#include <boost/thread/exceptions.hpp>
#include <glib-unix.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace brindle::threads;
using Adaptor = boost::shared_ptr<AsyncEventLoopAdaptor>;

namespace {

constexpr std::uint32_t kHour = 60 * 60 * 1000;

template <typename Condition>
void TurnUntil(Condition inCondition) {
    pollfd watched{EventLoopDescriptor(), POLLIN, 0};
    while (!inCondition()) {
        poll(&watched, 1, -1);
        DispatchMessages();
    }
}

void On(std::function<void()> const& inFunction) {
    std::thread(inFunction).join();
}

/// Keeps the shared timer, after this many milliseconds, from sending anything.
class TimerHeld {
public:
    explicit TimerHeld(std::uint32_t inDelay) {
        mTimer->Post([holds = mHolds, go = mGo] { holds->Open(), go->Wait(); }, inDelay);
        mHolds->Wait();
    }
    ~TimerHeld() { mGo->Open(); }

private:
    boost::shared_ptr<AsyncThreadedExecutor> mTimer = SharedTimer();
    std::shared_ptr<Gate> mHolds = std::make_shared<Gate>(false);
    std::shared_ptr<Gate> mGo = std::make_shared<Gate>(false);
};

/// The calling thread, and those that it starts, get no descriptors of events any more.
void RefuseEventDescriptors() {
    sock_filter steps[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                           BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_eventfd2, 0, 1),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EMFILE),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
    sock_fprog const program{4, steps};
    ASSERT_EQ(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
}

} // namespace

TEST(EventLoop, ImmediateItemsRunInOrderOnALaterTurn) {
    Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
    std::string ran;
    auto const note = [&](char inName) { return [&ran, inName] { ran += inName; }; };
    adaptor->Post(note('1'), 0);
    On([&] {
        EXPECT_FALSE(adaptor->IsCurrentThreadExecutorThread());
        adaptor->Post([] { throw std::runtime_error("dropped"); }, 0);
        EXPECT_TRUE(adaptor->Post({}, 0));
        adaptor->Post(note('2'), 0);
    });
    auto const turn = [&] {
        adaptor->Post(note('4'), 0);
        TurnUntil([&] { return ran == "1234"; });
        ran += '5';
    };
    adaptor->Post(turn, 0);
    adaptor->Post(note('3'), 0);
    EXPECT_EQ(ran, "");
    TurnUntil([&] { return ran == "12345"; });
}

TEST(EventLoop, DrainRunsWhatWaitsOnTheCallersThread) {
    Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
    std::vector<std::thread::id> ran;
    auto const note = [&] { ran.push_back(std::this_thread::get_id()); };
    adaptor->Post(note, kHour);
    adaptor->Post(note, 0);
    adaptor->Post([] { throw 1; }, 0);
    adaptor->Post(note, 0);
    On([&] {
        EXPECT_THROW(adaptor->Drain(), int);
        EXPECT_EQ(ran.size(), 1u);
        adaptor->Drain();
        EXPECT_EQ(ran, std::vector<std::thread::id>(2, std::this_thread::get_id()));
    });
    adaptor->Post(note, 0);
    TurnUntil([&] { return ran.size() == 3; });
}

TEST(EventLoop, AnAdaptorThatGoesReleasesItsItemsOnEveryPath) {
    Adaptor adaptor;
    auto const reset = [&] { adaptor.reset(); };
    std::function<void()> const ways[] = {reset, [&] { On(reset); }, [&] { adaptor->Drain(); },
                                          [] { DispatchMessages(); }, [] { /* with the thread */ }};
    for (int i = 0; i < 10; ++i) {
        Adaptor const other = i < 5 ? AdaptCurrentEventLoopAsExecutor() : Adaptor();
        auto const token = std::make_shared<int>(0);
        On([&] {
            adaptor = AdaptCurrentEventLoopAsExecutor();
            On([&] { adaptor->Post(reset, 0); });
            adaptor->Post([token] { ++*token; }, 1);
            TimerHeld const held(2); // its message waits, and the next pump is with the timer
            adaptor->Post([token] { ++*token; }, 0);
            On([&] { adaptor->Post([token] { ++*token; }, 0); });
            adaptor->Post([token] { ++*token; }, kHour);
            EXPECT_EQ(token.use_count(), 5);
            ways[i % 5]();
            EXPECT_EQ(token.use_count(), adaptor == nullptr ? 1 : 5);
        });
        EXPECT_TRUE(adaptor == nullptr || !adaptor->Post([token] { ++*token; }, 0));
        adaptor.reset();
        EXPECT_EQ(token.use_count(), 1);
        EXPECT_EQ(*token, 0);
    }
}

TEST(EventLoop, AdaptorsShareOneTimerWhileThereAreAny) {
    Adaptor one = AdaptCurrentEventLoopAsExecutor(), two = AdaptCurrentEventLoopAsExecutor();
    boost::weak_ptr<AsyncThreadedExecutor> const timer = SharedTimer();
    one.reset();
    EXPECT_EQ(SharedTimer(), timer.lock());
    two.reset();
    EXPECT_TRUE(timer.expired());
}

TEST(EventLoop, GLibsLoopIsAnExecutor) {
    Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
    std::unique_ptr<GMainLoop, void (*)(GMainLoop*)> const loop(g_main_loop_new(nullptr, FALSE),
                                                                g_main_loop_unref);
    auto const dispatch = [](gint, GIOCondition, gpointer) -> gboolean {
        DispatchMessages();
        return G_SOURCE_CONTINUE;
    };
    guint const source = g_unix_fd_add(EventLoopDescriptor(), G_IO_IN, dispatch, nullptr);
    int ran = 0;
    On([&] {
        for (int i = 0; i < 1000; ++i) {
            adaptor->Post([&, i] { EXPECT_EQ(ran++, i); }, 0);
        }
    });
    adaptor->Post([&] { adaptor->Post([&] { g_main_loop_quit(loop.get()); }, 1); }, 0);
    g_main_loop_run(loop.get());
    EXPECT_EQ(ran, 1000);
    g_source_remove(source);
}

TEST(EventLoopExecutor, ShutdownRunsWhatWasAcceptedAndReleasesTheRest) {
    auto const executor = CreateAsyncEventLoopExecutor("loop");
    EXPECT_FALSE(executor->IsShutdown());
    auto const token = std::make_shared<int>(0);
    auto const use = [token] { ++*token; };
    executor->Post(use, kHour);
    auto const shutDown = [&] {
        TimerHeld const held(0); // so these are left to the final drain
        EXPECT_TRUE(executor->IsCurrentThreadExecutorThread());
        executor->Post([] { throw 1; }, 0);
        executor->Post(use, 0);
        executor->Join();
        executor->Shutdown();
    };
    executor->Post(shutDown, 0);
    executor->Join();
    EXPECT_EQ(*token, 1);
    EXPECT_EQ(token.use_count(), 2);
    executor->Shutdown();
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
        for (int i = 0; i < 20; ++i) {
            executor->Drain();
        }
        executor->Shutdown();
        one.join(), two.join(), executor->Join();
        EXPECT_EQ(ran, accepted);
        EXPECT_EQ(token.use_count(), 1);
    }
}

TEST(EventLoop, WithoutDescriptorsThereIsAReportAndNoLoop) {
    brindle::tests::RecordingErrorManager errors;
    On([] {
        RefuseEventDescriptors();
        EXPECT_THROW(EventLoopDescriptor(), boost::thread_resource_error);
        auto const executor = CreateAsyncEventLoopExecutor("loop");
        EXPECT_TRUE(executor->IsShutdown());
        executor->Join();
    });
    EXPECT_EQ(errors.codes, (decltype(errors.codes){20, 20}));
}
