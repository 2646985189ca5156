#include "platform/portable/FreeList.h"

#include "tests/support/InThreads.h"
#include "tests/support/RandomDelays.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace brindle::platform {

// With few blocks and many threads, the head often changes and changes back between read and
// exchange (ABA).
TEST(FreeList, ThreadsNeverPopTheSameBlock) {
    struct {
        BasicFreeList<tests::RandomDelays> list;
        std::array<std::uint32_t, 4> blocks{}; // behind the list, which counts bytes from itself
    } pool;
    auto& list = pool.list;
    auto& blocks = pool.blocks;
    list.Fill(reinterpret_cast<std::byte*>(blocks.data()), 4, 3);
    list.PushChain(&blocks[3], &blocks[3]);
    std::array<std::atomic<bool>, 4> isTaken{};
    std::atomic<int> faults{0};
    auto const take = [&](std::uint32_t const* inBlock, bool inTake) {
        auto const index = static_cast<std::size_t>(inBlock - blocks.data());
        faults += isTaken[index].exchange(inTake, std::memory_order_relaxed) == inTake;
    };
    tests::InThreads(4, [&](std::uint32_t inThread) {
        std::vector<std::uint32_t*> mine;
        for (std::uint32_t round = 0; round < 5000; ++round) {
            std::uint32_t const mark = inThread + (round << 2);
            mine.clear();
            for (void* block; mine.size() < 2 && (block = list.Pop()) != nullptr;) {
                mine.push_back(static_cast<std::uint32_t*>(block));
                take(mine.back(), true);
                *mine.back() = mark; // overwrites the link, as an owner may
            }
            for (std::uint32_t const* const block : mine) {
                faults += *block != mark;
                take(block, false);
            }
            if (mine.size() == 2) {
                list.Link(mine[1], mine[0]);
            }
            if (!mine.empty()) {
                list.PushChain(mine.back(), mine.front());
            }
        }
    });
    EXPECT_EQ(faults, 0);
    for (int left = 4; left >= 0; --left) {
        EXPECT_EQ(list.Pop() != nullptr, left > 0);
    }
}

} // namespace brindle::platform
