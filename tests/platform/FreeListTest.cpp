#include "platform/portable/FreeList.h"

#include "tests/support/InThreads.h"

#include <gtest/gtest.h>

#include <array>

namespace brindle::platform {

namespace {

/// Lets other threads run between any two atomic steps.
struct Yield {
    static void Pause() noexcept {
        thread_local unsigned int count = 0;
        if (++count % 3 == 0) {
            std::this_thread::yield();
        }
    }
};

struct Pool {
    BasicFreeList<Yield> list;
    std::array<std::uint32_t, 4> blocks{};
};

TEST(FreeList, LastInIsFirstOut) {
    Pool pool;
    EXPECT_EQ(pool.list.Pop(), nullptr);
    pool.list.Fill(reinterpret_cast<std::byte*>(pool.blocks.data()), 4, 3);
    EXPECT_EQ(pool.list.Pop(), &pool.blocks[2]);
    pool.list.Link(&pool.blocks[2], &pool.blocks[3]);
    pool.list.PushChain(&pool.blocks[2], &pool.blocks[3]);
    for (std::size_t const i : {2U, 3U, 1U, 0U}) {
        EXPECT_EQ(pool.list.Pop(), &pool.blocks[i]);
    }
    EXPECT_EQ(pool.list.Pop(), nullptr);
}

// With few blocks and many threads, the head often changes and changes back between read and
// exchange (ABA).
TEST(FreeList, ThreadsNeverPopTheSameBlock) {
    Pool pool;
    pool.list.Fill(reinterpret_cast<std::byte*>(pool.blocks.data()), 4, 4);
    std::array<std::atomic<bool>, 4> isTaken{};
    std::atomic<int> faults{0};
    auto const take = [&](std::uint32_t const* inBlock, bool inTake) {
        auto const index = static_cast<std::size_t>(inBlock - pool.blocks.data());
        faults += isTaken[index].exchange(inTake, std::memory_order_relaxed) == inTake;
    };
    tests::InThreads(4, [&](std::uint32_t inThread) {
        for (std::uint32_t round = 0; round < 5000; ++round) {
            std::uint32_t const mark = inThread + (round << 2);
            std::array<std::uint32_t*, 2> mine{};
            std::size_t count = 0;
            while (count < 2 && (mine[count] = static_cast<std::uint32_t*>(pool.list.Pop()))) {
                take(mine[count], true);
                *mine[count++] = mark; // overwrites the link, as an owner may
            }
            for (std::size_t i = 0; i < count; ++i) {
                faults += *mine[i] != mark;
                take(mine[i], false);
            }
            if (count == 2) {
                pool.list.Link(mine[1], mine[0]);
            }
            if (count > 0) {
                pool.list.PushChain(mine[count - 1], mine[0]);
            }
        }
    });
    EXPECT_EQ(faults, 0);
    for (int i = 0; i < 4; ++i) {
        EXPECT_NE(pool.list.Pop(), nullptr);
    }
    EXPECT_EQ(pool.list.Pop(), nullptr);
}

} // namespace

} // namespace brindle::platform
