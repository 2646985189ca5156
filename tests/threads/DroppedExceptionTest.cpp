#include <brindle/threads/DroppedException.h>

#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/EventLoop.h>

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <string>
#include <utility>

namespace brindle::threads {

namespace {

std::string S_heard;

void Hear(std::exception_ptr const& inException, char const* inName) {
    try {
        std::rethrow_exception(inException);
    } catch (std::exception const& problem) {
        S_heard += std::string(inName) + ": " + problem.what() + '\n';
    }
    throw 1; // which ends neither a worker nor a loop
}

void Fail() {
    throw std::runtime_error("failed");
}

TEST(DroppedException, OfAPoolReachesTheHook) {
    EXPECT_EQ(SetDroppedExceptionHook(Hear), nullptr);
    auto const pool = CreateAsyncThreadedExecutor("pool", 1, kThreadPriorityNormal);
    pool->Post(Fail, 0);
    pool->Post(Fail, 0);
    pool->Synchronize();
    EXPECT_EQ(SetDroppedExceptionHook(nullptr), Hear);
    pool->Post(Fail, 0);
    pool->Synchronize();
    EXPECT_EQ(std::exchange(S_heard, {}), "pool: failed\npool: failed\n");
}

TEST(DroppedException, OfALoopReachesTheHookUnlessItReachesTheCaller) {
    SetDroppedExceptionHook(Hear);
    std::promise<void> arePosted;
    auto const loop = CreateAsyncEventLoopExecutor("loop");
    loop->Post(Fail, 0);
    loop->Post(
        [&] {
            arePosted.get_future().wait();
            loop->Shutdown();
        },
        0);
    loop->Post(Fail, 0); // after the loop has ended, in the final drain
    arePosted.set_value();
    loop->Join();
    EXPECT_EQ(std::exchange(S_heard, {}), "loop: failed\nloop: failed\n");
    auto const adaptor = AdaptCurrentEventLoopAsExecutor();
    adaptor->Post(Fail, 0);
    EXPECT_THROW(adaptor->Drain(), std::runtime_error);
    EXPECT_EQ(S_heard, "");
    adaptor->Post(Fail, 0);
    DispatchMessages();
    EXPECT_EQ(std::exchange(S_heard, {}), ": failed\n");
    SetDroppedExceptionHook(nullptr);
}

} // namespace

} // namespace brindle::threads
