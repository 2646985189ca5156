#include "platform/FreeList.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>
#include <vector>

namespace brindle::platform {

namespace {

/// Lets other threads run between any two atomic steps.
struct Yield {
    static void Between() noexcept {
        thread_local unsigned int count = 0;
        if (++count % 3 == 0) {
            std::this_thread::yield();
        }
    }
};

template <typename Delay>
struct Pool {
    BasicFreeList<Delay> list;
    std::array<std::uint32_t, 4> blocks{};
};

TEST(FreeList, LastInIsFirstOut) {
    Pool<NoDelay> pool;
    EXPECT_EQ(pool.list.Pop(), nullptr);
    pool.list.Fill(reinterpret_cast<std::byte*>(pool.blocks.data()), 4, 3);
    EXPECT_EQ(pool.list.Pop(), &pool.blocks[2]);
    pool.list.Push(&pool.blocks[3]);
    pool.list.Link(&pool.blocks[2], &pool.blocks[3]);
    EXPECT_EQ(pool.list.Pop(), &pool.blocks[3]);
    pool.list.Link(&pool.blocks[2], &pool.blocks[3]);
    pool.list.PushChain(&pool.blocks[2], &pool.blocks[3]);
    for (std::size_t const i : {2U, 3U, 1U, 0U}) {
        EXPECT_EQ(pool.list.Pop(), &pool.blocks[i]);
    }
    EXPECT_EQ(pool.list.Pop(), nullptr);
}

// Few blocks and many threads: a head that comes back between read and exchange is the rule.
TEST(FreeList, ThreadsNeverPopTheSameBlock) {
    Pool<Yield> pool;
    pool.list.Fill(reinterpret_cast<std::byte*>(pool.blocks.data()), 4, 4);
    std::array<std::atomic<bool>, 4> isTaken{};
    std::atomic<int> faults{0};
    std::vector<std::thread> threads;
    for (std::uint32_t thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (std::uint32_t round = 0; round < 20000; ++round) {
                std::array<std::uint32_t*, 2> mine{};
                for (auto*& block : mine) {
                    block = static_cast<std::uint32_t*>(pool.list.Pop());
                    if (block != nullptr) {
                        auto const index = static_cast<std::size_t>(block - pool.blocks.data());
                        faults += isTaken[index].exchange(true, std::memory_order_relaxed);
                        *block = thread + (round << 2); // over the link, as an owner would
                    }
                }
                for (auto* const block : mine) {
                    if (block != nullptr) {
                        faults += *block != thread + (round << 2);
                        isTaken[static_cast<std::size_t>(block - pool.blocks.data())].store(
                            false, std::memory_order_relaxed);
                    }
                }
                if (mine[0] != nullptr && mine[1] != nullptr) {
                    pool.list.Link(mine[1], mine[0]);
                    pool.list.PushChain(mine[1], mine[0]);
                } else if (mine[0] != nullptr) {
                    pool.list.Push(mine[0]);
                } else if (mine[1] != nullptr) {
                    pool.list.Push(mine[1]);
                }
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(faults, 0);
    int left = 0;
    while (pool.list.Pop() != nullptr) {
        ++left;
    }
    EXPECT_EQ(left, 4);
}

} // namespace

} // namespace brindle::platform
