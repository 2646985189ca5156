#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/EventLoop.h>

#include "tests/RecordingErrorManager.h"
#include "threads/src/Gate.h"
#include "threads/src/SharedTimer.h"

#include <boost/smart_ptr/weak_ptr.hpp>
#include <glib-unix.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace brindle::threads;

namespace {

constexpr std::uint32_t kHour = 60 * 60 * 1000;

using Adaptor = boost::shared_ptr<AsyncEventLoopAdaptor>;

bool Await(int inMilliseconds = -1) {
    pollfd watched{EventLoopDescriptor(), POLLIN, 0};
    return poll(&watched, 1, inMilliseconds) == 1;
}

template <typename Condition>
void TurnUntil(Condition inCondition) {
    while (!inCondition()) {
        Await();
        DispatchMessages();
    }
}

void On(std::function<void()> const& inFunction) {
    std::thread(inFunction).join();
}

/// Keeps the shared timer from sending anything until it is destroyed.
class TimerHeld {
public:
    TimerHeld() {
        mTimer->Post([holding = mHolding, go = mGo] { holding->Open(), go->Wait(); }, 0);
        mHolding->Wait();
    }
    ~TimerHeld() { mGo->Open(); }

private:
    boost::shared_ptr<AsyncThreadedExecutor> mTimer = SharedTimer();
    std::shared_ptr<Gate> mHolding = std::make_shared<Gate>(false);
    std::shared_ptr<Gate> mGo = std::make_shared<Gate>(false);
};

} // namespace

TEST(EventLoop, ImmediateItemsRunInOrderOnALaterTurn) {
    Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
    EXPECT_TRUE(adaptor->IsCurrentThreadExecutorThread());
    std::string ran;
    auto const note = [&](char inName) { return [&ran, inName] { ran += inName; }; };
    EXPECT_TRUE(adaptor->Post(note('1'), 0));
    On([&] {
        EXPECT_FALSE(adaptor->IsCurrentThreadExecutorThread());
        adaptor->Post(note('2'), 0);
        adaptor->Post([] { throw std::runtime_error("dropped"); }, 0);
        adaptor->Post({}, 0);
    });
    adaptor->Post(
        [&] {
            // A turn within a turn runs what follows.
            adaptor->Post(note('5'), 0);
            TurnUntil([&] { return ran == "1245"; });
            ran += '3';
        },
        0);
    adaptor->Post(note('4'), 0);
    EXPECT_EQ(ran, "");
    TurnUntil([&] { return ran.size() == 5; });
    EXPECT_EQ(ran, "12453");
    DispatchMessages();
    EXPECT_FALSE(Await(0));
}

TEST(EventLoop, DelayedItemsRunInTheOrderOfTheirTimes) {
    using namespace std::chrono;
    Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
    for (bool isTelling = false; !isTelling;) {
        std::string ran;
        auto const begin = steady_clock::now();
        adaptor->Post([&] { ran += '2'; }, 90);
        adaptor->Post([&] { ran += '1'; }, 30);
        isTelling = steady_clock::now() - begin < milliseconds(50);
        TurnUntil([&] { return ran.size() == 2; });
        EXPECT_GE(steady_clock::now() - begin, milliseconds(89));
        EXPECT_TRUE(ran == "12" || !isTelling);
    }
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
    for (bool const isTimerShared : {false, true}) {
        for (std::string const where : {"here", "elsewhere", "in an item", "in a drain", "late"}) {
            Adaptor const other = isTimerShared ? AdaptCurrentEventLoopAsExecutor() : Adaptor();
            auto const token = std::make_shared<int>(0);
            auto const use = [token] { ++*token; };
            Adaptor adaptor;
            On([&] {
                adaptor = AdaptCurrentEventLoopAsExecutor();
                adaptor->Post(use, 1);
                Await(); // its message waits
                if (where == "in an item") {
                    On([&] { adaptor->Post([&] { adaptor.reset(); }, 0); });
                    On([&, mine = adaptor.get()] { mine->Post(use, 0); });
                } else if (where == "in a drain") {
                    adaptor->Post([&] { adaptor.reset(); }, 0);
                }
                {
                    TimerHeld const held; // of this one, the pump is with the timer
                    adaptor->Post(use, 0);
                    adaptor->Post(use, kHour);
                    On([&] { adaptor->Post(use, 0); });
                    EXPECT_EQ(token.use_count(), where == "in an item" ? 7 : 6);
                    if (where == "here") {
                        adaptor.reset();
                    } else if (where == "elsewhere") {
                        On([&] { adaptor.reset(); });
                    } else if (where == "in an item") {
                        DispatchMessages(); // the delayed one runs
                    } else if (where == "in a drain") {
                        adaptor->Drain();
                    }
                }
                if (where == "late") {
                    return;
                }
                EXPECT_EQ(token.use_count(), 2);
                DispatchMessages();
            });
            if (where == "late") {
                EXPECT_FALSE(adaptor->Post(use, 0));
                adaptor.reset();
            }
            EXPECT_EQ(token.use_count(), 2) << where;
            EXPECT_EQ(*token, where == "in an item" ? 1 : 0) << where;
        }
    }
}

TEST(EventLoop, AdaptorsShareOneTimerWhileThereAreAny) {
    boost::weak_ptr<AsyncThreadedExecutor> timer;
    {
        Adaptor const one = AdaptCurrentEventLoopAsExecutor();
        timer = SharedTimer();
        Adaptor const two = AdaptCurrentEventLoopAsExecutor();
        EXPECT_EQ(SharedTimer(), timer.lock());
    }
    EXPECT_TRUE(timer.expired());
    EXPECT_NE(AdaptCurrentEventLoopAsExecutor(), nullptr);
}

TEST(EventLoop, GLibsLoopIsAnExecutor) {
    Adaptor const adaptor = AdaptCurrentEventLoopAsExecutor();
    GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
    auto const dispatch = [](gint, GIOCondition, gpointer) -> gboolean {
        DispatchMessages();
        return G_SOURCE_CONTINUE;
    };
    guint const source = g_unix_fd_add(EventLoopDescriptor(), G_IO_IN, dispatch, nullptr);
    int ran = 0;
    std::thread poster([&] {
        for (int i = 0; i < 1000; ++i) {
            adaptor->Post([&, i] { EXPECT_EQ(ran++, i); }, 0);
        }
        adaptor->Post([&] { adaptor->Post([&] { g_main_loop_quit(loop); }, 1); }, 0);
    });
    g_main_loop_run(loop);
    poster.join();
    EXPECT_EQ(ran, 1000);
    g_source_remove(source);
    g_main_loop_unref(loop);
}

TEST(EventLoopExecutor, ShutdownRunsWhatWasAcceptedAndReleasesTheRest) {
    auto const executor = CreateAsyncEventLoopExecutor("loop");
    EXPECT_FALSE(executor->IsShutdown());
    EXPECT_FALSE(executor->IsCurrentThreadExecutorThread());
    auto const token = std::make_shared<int>(0);
    auto const use = [token] { ++*token; };
    Gate ready(false), go(false);
    executor->Post(use, kHour);
    executor->Post(
        [&] {
            ready.Open(), go.Wait();
            TimerHeld const held; // so these are left to the final drain
            EXPECT_TRUE(executor->IsCurrentThreadExecutorThread());
            executor->Post([] { throw 1; }, 0);
            executor->Post(use, 0);
            executor->Join();
            executor->Shutdown();
        },
        0);
    executor->Post(use, 0);
    ready.Wait();
    // An item of a drain on another thread may shut down, too.
    executor->Drain();
    EXPECT_EQ(*token, 1);
    go.Open();
    std::thread joiner([&] { executor->Join(); });
    executor->Join();
    joiner.join();
    EXPECT_EQ(*token, 2);
    EXPECT_EQ(token.use_count(), 2);
    executor->Shutdown();
    EXPECT_TRUE(executor->IsShutdown());
    EXPECT_FALSE(executor->IsCurrentThreadExecutorThread());
    EXPECT_FALSE(executor->Post(use, 0));
    executor->Drain();
}
