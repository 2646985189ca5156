#include <brindle/utility/SmallBlockAllocator.h>

#include "platform/AlignedMemory.h"
#include "tests/support/InThreads.h"
#include "utility/src/memory/Managers.h"
#include "utility/src/memory/TopChunks.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace brindle::utility::SmallBlockAllocator {

namespace {

using Blocks = std::vector<void*>;
using tests::InThreads;

ChunkedAllocator& ManagerOf(unsigned int inSize) {
    EXPECT_TRUE(Managers::AreReady());
    return Managers::Of(inSize == kMiddleChunk ? SizeClasses::kOfMiddleChunks
                                               : SizeClasses::kClassOf[inSize]);
}

/// In all classes of requests, after emptying the caches of the calling thread and the process.
std::int32_t BlocksInUse() {
    ReleaseStock();
    std::int32_t blocks = 0;
    for (std::size_t i = 0; i < SizeClasses::kOfSmallChunks; ++i) {
        blocks += Managers::Of(i).Count().blocksInUse;
    }
    return blocks;
}

TEST(SmallBlockAllocator, BlocksHaveTheSizesAndAlignmentsOfTheirClasses) {
    unsigned int const sizes[][2] = {{0, 4},       {1, 4},       {5, 8},       {9, 16},
                                     {33, 48},     {100, 112},   {257, 288},   {513, 640},
                                     {4097, 4352}, {4128, 4128}, {8192, 8192}, {8193, 8193}};
    for (auto const& [request, actual] : sizes) {
        EXPECT_EQ(GetActualAllocationSize(request), actual);
    }
    for (unsigned int size :
         {0U, 4U, 8U, 20U, 24U, 32U, 800U, 4128U, 8192U, 8193U, 66080U, 925152U}) {
        void* const block = Allocate(size);
        auto const alignment = size <= 4 ? 4U : size == 8 || size == 20 || size == 24 ? 8U : 16U;
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignment, 0U) << size;
        std::memset(block, 0xFF, size);
        Dispose(block, size);
    }
}

TEST(SmallBlockAllocator, ChunksGrowWithTheClassAndAreFreedWithTheirLastBlock) {
    ReleaseStock();
    unsigned int const plans[][3] = {{32, 4128, 66080}, {896, 4128, 66080}, {1152, 66080, 925152}};
    for (auto const& [size, first, second] : plans) {
        auto& manager = ManagerOf(size);
        Blocks blocks;
        auto expected = manager.Count();
        while (expected.bytes < 2'500'000 || blocks.size() < expected.blocks) {
            if (blocks.size() == expected.blocks) {
                auto const chunk = expected.bytes >= 925152   ? 925152
                                   : expected.bytes >= second ? second
                                                              : first;
                expected.bytes += chunk;
                expected.blocks += (chunk - 32) / size;
            }
            blocks.push_back(manager.Allocate(size));
            ASSERT_EQ(manager.Count().bytes, expected.bytes);
            ASSERT_EQ(manager.Count().blocks, expected.blocks);
        }
        // Free and allocate each block while all others are in use: no free block is overlooked.
        for (void*& block : blocks) {
            manager.Dispose(block, size);
            block = manager.Allocate(size);
        }
        EXPECT_EQ(manager.Count().bytes, expected.bytes);
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            ASSERT_TRUE(manager.Dispose(blocks[i * 7919 % blocks.size()], size));
        }
        EXPECT_EQ(manager.Count().blocksInUse, 0);
        EXPECT_EQ(manager.Count().chunks, size == 32 ? 1U : 0U);
    }
    EXPECT_EQ(ManagerOf(kSmallChunk).Count().blocks % 16, 0U);
    EXPECT_EQ(ManagerOf(kMiddleChunk).Count().blocks % 14, 0U);
}

TEST(SmallBlockAllocator, BlocksFromTheHeapAreFreedToTheHeap) {
    for (unsigned int const size : {0U, 32U, 144U, 1024U, 4128U, 8192U, 8193U, 66080U}) {
        void* const own = Allocate(size);
        Dispose(platform::AllocateAligned(size, 16), size);
        Dispose(nullptr, size);
        Dispose(own, size);
    }
    int const foreign = 0;
    EXPECT_FALSE(ManagerOf(32).Dispose(const_cast<int*>(&foreign), 32));

    auto* const chunk = static_cast<std::byte*>(TopChunks::Allocate());
    ASSERT_NE(chunk, nullptr);
    EXPECT_TRUE(TopChunks::Hold(chunk));
    EXPECT_TRUE(TopChunks::Hold(chunk + kLargeChunk - 1));
    EXPECT_FALSE(TopChunks::Hold(chunk + kLargeChunk));
    EXPECT_FALSE(TopChunks::AreKnownToHold(chunk + kLargeChunk));
    EXPECT_FALSE(TopChunks::Hold(chunk - 1));
    TopChunks::Free(chunk);
    for (void* const none : {static_cast<void*>(chunk), static_cast<void*>(nullptr)}) {
        EXPECT_FALSE(TopChunks::Hold(none));
        EXPECT_FALSE(TopChunks::AreKnownToHold(none));
    }
}

TEST(SmallBlockAllocator, FailedAllocationsLeaveItConsistent) {
    std::int32_t const before = BlocksInUse();
    static std::atomic<int> S_untilRefusal{-1};
    platform::SetAllocationFilter([](std::size_t) { return S_untilRefusal.fetch_sub(1) != 0; });
    for (int n = 0; S_untilRefusal < 0; ++n) {
        S_untilRefusal = n;
        int refusals = 0;
        for (auto const& [size, count] :
             {std::pair(16U, 1500), std::pair(160U, 7500), std::pair(1152U, 200),
              std::pair(4128U, 100), std::pair(66080U, 20), std::pair(925152U, 2)}) {
            Blocks blocks;
            for (int i = 0; i < count; ++i) {
                try {
                    blocks.push_back(Allocate(size));
                    refusals += blocks.back() == nullptr;
                } catch (std::bad_alloc const&) {
                    ++refusals;
                }
            }
            for (void* const block : blocks) {
                Dispose(block, size);
            }
        }
        EXPECT_LE(refusals, 1);
        ASSERT_EQ(BlocksInUse(), before);
    }
    platform::SetAllocationFilter(nullptr);
}

using SmallBlockAllocatorDeathTest = ::testing::Test;

TEST_F(SmallBlockAllocatorDeathTest, HeapServesAllUntilItIsInitialised) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const begin = [](bool inWithMemory) {
        if (!inWithMemory) {
            platform::SetAllocationFilter([](std::size_t) { return false; });
            bool const isNull = Allocate(32) == nullptr;
            platform::SetAllocationFilter(nullptr);
            if (!isNull || Managers::AreReady() || GetActualAllocationSize(5) != 5) {
                std::_Exit(1);
            }
        }
        Blocks blocks(4);
        InThreads(4, [&](unsigned int inThread) { blocks[inThread] = Allocate(48); });
        for (void* const block : blocks) {
            Dispose(std::memset(block, 0xFF, 48), 48);
        }
        std::_Exit(Managers::AreReady() == inWithMemory ? 0 : 1);
    };
    EXPECT_EXIT(begin(false), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(begin(true), ::testing::ExitedWithCode(0), "");
}

/// Blocks of all kinds of classes, which threads exchange with each other.
struct Exchange {
    static constexpr unsigned int kSizes[] = {8, 32, 128, 144, 1024, 1152, 4128};

    std::vector<std::atomic<void*>> places{700};

    static unsigned int SizeAt(std::size_t inPlace) { return kSizes[inPlace % std::size(kSizes)]; }
    void Put(std::size_t inPlace, void* inBlock) {
        Dispose(places[inPlace].exchange(inBlock, std::memory_order_acq_rel), SizeAt(inPlace));
    }
    ~Exchange() {
        for (std::size_t i = 0; i < places.size(); ++i) {
            Put(i, nullptr);
        }
    }
};

/// Allocates blocks in bursts larger than a thread's cache, writes to them, and checks that they
/// keep their contents until it frees them or hands them to another thread.
void Churn(Exchange& ioExchange, std::uint32_t inSeed, int inBursts) {
    std::uint32_t random = inSeed * 2654435761U + 1;
    std::array<void*, 400> blocks{};
    for (int burst = 0; burst < inBursts; ++burst) {
        random = random * 1664525U + 1013904223U;
        std::size_t const place = (random >> 8) % ioExchange.places.size();
        unsigned int const size = Exchange::SizeAt(place);
        for (void*& block : blocks) {
            block = Allocate(size);
            auto* const words = static_cast<std::uint32_t*>(block);
            words[0] = words[size / 4 - 1] = random;
        }
        for (void* const block : blocks) {
            auto* const words = static_cast<std::uint32_t*>(block);
            ASSERT_EQ(words[0], random);
            ASSERT_EQ(words[size / 4 - 1], random);
            Dispose(block, size);
        }
        ioExchange.Put(place, Allocate(size));
    }
}

TEST(SmallBlockAllocator, MemoryIsBoundedWhereOneAllocatesAndAnotherDisposes) {
    std::array<Blocks, 2> belts{Blocks(20000), Blocks(20000)};
    boost::barrier turn(2);
    InThreads(2, [&](unsigned int inThread) {
        for (unsigned int round = 0; round < 51; ++round) {
            for (void*& block : belts[(round + inThread) % 2]) {
                Dispose(std::exchange(block, inThread == 0 ? Allocate(64) : nullptr), 64);
            }
            turn.wait();
        }
    });
    EXPECT_LE(ManagerOf(64).Count().bytes, 4'500'000U); // of 65 million that were allocated
    for (void* const block : belts[0]) {
        Dispose(block, 64);
    }
    EXPECT_LE(ManagerOf(64).Count().blocksInUse, (256 + 2 * 16) * 1024 / 64 + 1);
    ReleaseStock();
    EXPECT_EQ(ManagerOf(64).Count().chunks, 1U);
}

TEST(SmallBlockAllocator, NoTwoThreadsAndNoForkedChildHoldTheSameBlock) {
    std::int32_t const before = BlocksInUse();
    std::optional<Exchange> exchange(std::in_place);
    std::atomic<bool> isDone{false};
    InThreads(4, [&](std::uint32_t inThread) {
        do {
            Churn(*exchange, inThread, 200);
        } while (inThread != 0 && !isDone);
        for (int round = 0; inThread == 0 && round < 30; ++round) {
            pid_t const child = ::fork();
            if (child == 0) {
                Exchange own;
                Churn(own, 7, 20);
                ::_exit(::testing::Test::HasFailure() ? 1 : 0);
            }
            int status = 0;
            EXPECT_EQ(::waitpid(child, &status, 0), child);
            EXPECT_EQ(status, 0) << round;
        }
        isDone = true;
    });
    exchange.reset();
    EXPECT_EQ(BlocksInUse(), before);
}

} // namespace

} // namespace brindle::utility::SmallBlockAllocator
