#include <brindle/threads/DroppedException.h>

#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <brindle/threads/AsyncEventLoopExecutor.h>
#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/EventLoop.h>

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <string>

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

class DroppedException : public testing::Test {
protected:
    DroppedException() {
        S_heard.clear();
        EXPECT_EQ(SetDroppedExceptionHook(Hear), nullptr);
    }
    ~DroppedException() override { EXPECT_EQ(SetDroppedExceptionHook(nullptr), Hear); }
};

TEST_F(DroppedException, OfAPoolReachesTheHook) {
    auto const pool = CreateAsyncThreadedExecutor("pool", 1, kThreadPriorityNormal);
    pool->Post(Fail, 0);
    pool->Post(Fail, 0);
    pool->Synchronize();
    EXPECT_EQ(S_heard, "pool: failed\npool: failed\n");
    SetDroppedExceptionHook(nullptr);
    pool->Post(Fail, 0);
    pool->Synchronize();
    EXPECT_EQ(SetDroppedExceptionHook(Hear), nullptr);
    EXPECT_EQ(S_heard, "pool: failed\npool: failed\n") << "nobody is asked any more";
}

TEST_F(DroppedException, OfALoopReachesTheHookUnlessItReachesTheCaller) {
    auto const loop = CreateAsyncEventLoopExecutor("loop");
    loop->Post(Fail, 1);
    loop->Post([&] { loop->Post([&] { loop->Shutdown(); }, 20); }, 0);
    loop->Join();
    EXPECT_EQ(S_heard, "loop: failed\n");
    auto const last = CreateAsyncEventLoopExecutor("last");
    std::promise<void> arePosted;
    last->Post(
        [&] {
            arePosted.get_future().wait();
            last->Shutdown();
        },
        0);
    last->Post(Fail, 0);
    arePosted.set_value();
    last->Join();
    EXPECT_EQ(S_heard, "loop: failed\nlast: failed\n") << "while it ends";
    auto const adaptor = AdaptCurrentEventLoopAsExecutor();
    adaptor->Post(Fail, 0);
    EXPECT_THROW(adaptor->Drain(), std::runtime_error);
    adaptor->Post(Fail, 0);
    DispatchMessages();
    EXPECT_EQ(S_heard, "loop: failed\nlast: failed\n: failed\n");
}

} // namespace

} // namespace brindle::threads
