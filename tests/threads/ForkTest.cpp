#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/EventLoop.h>
#include <brindle/threads/EventLoopWakeUp.h>

#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

using namespace brindle::threads;

namespace {

/// What a program may have in static objects.
struct Executors {
    boost::shared_ptr<AsyncThreadedExecutor> pool =
        CreateAsyncThreadedExecutor("pool", 2, kThreadPriorityNormal);
    boost::shared_ptr<AsyncEventLoopExecutor> loop = CreateAsyncEventLoopExecutor("loop");
    boost::shared_ptr<AsyncEventLoopAdaptor> adaptor = AdaptCurrentEventLoopAsExecutor();
    // So long that the process is copied during a call.
    EventLoopWakeUp wakeUp{[] { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }};
    ~Executors() {
        pool->Shutdown();
        pool->Synchronize();
        loop->Shutdown();
        loop->Join();
    }
};

bool S_isChild = false;

/// The executors, and a handler that ends a child after they are destroyed, before a sanitizer
/// looks for what it leaks.
Executors& Statics() {
    static int const handler = std::atexit([] { S_isChild ? _exit(0) : void(); });
    static Executors executors;
    EXPECT_EQ(handler, 0);
    return executors;
}

/// In the child: what was inherited accepts nothing, and new executors work. Returns the number of
/// failures.
int UseInChild(Executors& ioInherited) {
    int failures = 0;
    auto const expect = [&](bool inHolds) { failures += inHolds ? 0 : 1; };
    for (std::uint32_t const delay : {0U, 1U}) {
        expect(!ioInherited.pool->Post([] {}, delay));
        expect(!ioInherited.loop->Post([] {}, delay));
        expect(!ioInherited.adaptor->Post([] {}, delay));
    }
    expect(ioInherited.pool->IsShutdown());
    expect(ioInherited.loop->IsShutdown());
    int ran = 0;
    auto const pool = CreateAsyncThreadedExecutor("child", 1, kThreadPriorityNormal);
    pool->Post([&] { ++ran; }, 0);
    pool->Synchronize();
    auto const adaptor = AdaptCurrentEventLoopAsExecutor();
    EventLoopWakeUp const wakeUp([&] { ++ran; });
    adaptor->Post([&] { ++ran; }, 0);
    DispatchMessages();
    expect(ran == 3);
    return failures;
}

} // namespace

TEST(Fork, AChildWithStaticExecutorsExitsAndMayMakeItsOwn) {
#if defined(BRINDLE_SANITIZED)
    GTEST_SKIP() << "the locks of the sanitizers' allocators do not survive a fork";
#endif
    Executors& executors = Statics();
    std::atomic<bool> isOver{false};
    // Locks are held and items change at any moment at which the process is copied.
    std::thread busy([&] {
        for (std::uint32_t i = 0; !isOver; ++i) {
            executors.pool->Post([] {}, i % 3);
            executors.loop->Post([] {}, i % 3);
            executors.adaptor->Post([] {}, i % 3);
            i % 64 == 0 ? executors.pool->Suspend() : executors.pool->Resume();
        }
    });
    for (int round = 0; round < 30; ++round) {
        DispatchMessages();
        brindle::tests::ChildProcess child([&] {
            S_isChild = true;
            alarm(60); // ends a child that hangs
            int const failures = UseInChild(executors);
            failures == 0 ? std::exit(0) : void();
            return failures;
        });
        EXPECT_EQ(child.Wait(), 0);
    }
    isOver = true;
    busy.join();
    executors.pool->Resume();
}
