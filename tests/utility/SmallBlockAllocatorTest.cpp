#include <brindle/debug/Contract.h>
#include <brindle/utility/SmallBlockAllocator.h>

#include "debug/src/ContractMessage.h"
#include "platform/AlignedMemory.h"
#include "tests/RecordingErrorManager.h"
#include "utility/src/Managers.h"
#include "utility/src/TopChunks.h"

#include <boost/thread/barrier.hpp>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <thread>
#include <vector>

namespace brindle::utility::SmallBlockAllocator {

namespace {

using Blocks = std::vector<void*>;

ChunkedAllocator& ManagerOf(unsigned int inSize) {
    EXPECT_TRUE(Managers::AreReady());
    return Managers::Of(inSize == kMiddleChunk ? SizeClasses::kOfMiddleChunks
                                               : SizeClasses::kClassOf[inSize]);
}

/// In the classes of requests, when the calling thread and the process keep none.
std::int32_t BlocksInUse() {
    ReleaseStock();
    std::int32_t blocks = 0;
    for (std::size_t i = 0; i < SizeClasses::kOfSmallChunks; ++i) {
        blocks += Managers::Of(i).Count().blocksInUse;
    }
    return blocks;
}

/// Runs a function in several threads at once and waits for them.
void InThreads(int inCount, std::function<void(int)> const& inFunction) {
    boost::barrier start(static_cast<unsigned int>(inCount));
    std::vector<std::thread> threads;
    for (int i = 0; i < inCount; ++i) {
        threads.emplace_back([&, i] {
            start.wait();
            inFunction(i);
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TEST(SmallBlockAllocator, SizesAreThoseOfTheLadder) {
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

TEST(SmallBlockAllocator, ChunksGrowWithTheClassAndGoWithTheirBlocks) {
    unsigned int const first[][3] = {{24, 170, 4128}, {144, 28, 4128}, {1152, 57, 66080}};
    ReleaseStock();
    for (auto const& [size, blocks, bytes] : first) {
        void* const block = ManagerOf(size).Allocate(size);
        auto const census = ManagerOf(size).Count();
        EXPECT_EQ(census.blocks, blocks);
        EXPECT_EQ(census.bytes, bytes);
        EXPECT_TRUE(ManagerOf(size).Dispose(block, size));
        EXPECT_EQ(ManagerOf(size).Count().chunks, size == 24 ? 1U : 0U);
    }
    EXPECT_EQ(ManagerOf(kSmallChunk).Count().blocks % 16, 0U);
    EXPECT_EQ(ManagerOf(kMiddleChunk).Count().blocks % 14, 0U);

    for (unsigned int const size : {32U, 176U}) {
        auto& manager = ManagerOf(size);
        Blocks blocks;
        for (std::uint64_t bytes = manager.Count().bytes; bytes < 5'000'000;) {
            bool const isFull =
                manager.Count().blocksInUse == static_cast<std::int32_t>(manager.Count().blocks);
            blocks.push_back(manager.Allocate(size));
            if (isFull) {
                bytes += bytes >= 925152 ? 925152U : bytes >= 66080 ? 66080U : 4128U;
            }
            ASSERT_EQ(manager.Count().bytes, bytes);
        }
        // Backwards, forwards, and what is left from within chunks other than the current one.
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            ASSERT_TRUE(manager.Dispose(blocks[i * 7919 % blocks.size()], size));
        }
        EXPECT_EQ(manager.Count().blocksInUse, 0);
        EXPECT_EQ(manager.Count().chunks, size == 32 ? 1U : 0U);
    }
}

TEST(SmallBlockAllocator, FullSmallChunksDoNotHideFreeBlocks) {
    auto& manager = ManagerOf(896);
    Blocks blocks;
    while (manager.Count().chunks < 20) {
        blocks.push_back(manager.Allocate(896));
    }
    auto const bytes = manager.Count().bytes;
    while (manager.Count().blocksInUse < static_cast<std::int32_t>(manager.Count().blocks)) {
        blocks.push_back(manager.Allocate(896));
    }
    // One block after the other of the large chunks goes and comes back, each while all others are
    // full.
    for (std::size_t i = blocks.size() - 150; i < blocks.size(); ++i) {
        manager.Dispose(blocks[i], 896);
        blocks[i] = manager.Allocate(896);
    }
    EXPECT_EQ(manager.Count().bytes, bytes);
    for (void* const block : blocks) {
        manager.Dispose(block, 896);
    }
}

TEST(SmallBlockAllocator, BlocksOfTheHeapGoBackThere) {
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
    EXPECT_TRUE(TopChunks::Hold(chunk) && TopChunks::Hold(chunk + kLargeChunk - 1));
    EXPECT_FALSE(TopChunks::Hold(chunk + kLargeChunk) || TopChunks::Hold(chunk - 1));
    EXPECT_FALSE(TopChunks::AreKnownToHold(chunk + kLargeChunk));
    TopChunks::Free(chunk);
    EXPECT_FALSE(TopChunks::Hold(chunk) || TopChunks::AreKnownToHold(chunk));
    EXPECT_FALSE(TopChunks::Hold(nullptr) || TopChunks::AreKnownToHold(nullptr));
}

std::string S_contract;

TEST(SmallBlockAllocator, ManagersRefuseLargerRequests) {
    tests::RecordingErrorManager errors;
    debug::SetContractMessageHook([](char const* inText) { S_contract += inText; });
    void* const block = ManagerOf(32).Allocate(33);
    ManagerOf(32).Dispose(block, 33);
    debug::SetContractMessageHook(nullptr);
    EXPECT_EQ(errors.codes, (tests::RecordingErrorManager::Codes{25, 25}));
    EXPECT_EQ(S_contract, "[utility/src/SmallBlockAllocator-447]\r\n"
                          "[utility/src/SmallBlockAllocator-453]\r\n");
}

std::atomic<int> S_untilRefusal{-1};

TEST(SmallBlockAllocator, EveryRefusalOfMemoryLeavesItWhole) {
    std::int32_t const before = (Managers::AreReady(), BlocksInUse());
    platform::SetAllocationFilter([](std::size_t) { return S_untilRefusal.fetch_sub(1) != 0; });
    for (int n = 0; S_untilRefusal < 0; ++n) {
        S_untilRefusal = n;
        int refusals = 0;
        std::vector<std::pair<void*, unsigned int>> blocks;
        std::pair<unsigned int, unsigned int> const requests[] = {
            {16, 1500}, {160, 7500}, {1152, 200}, {4128, 100}, {66080, 20}, {925152, 2}};
        for (auto const& [size, count] : requests) {
            for (unsigned int i = 0; i < count; ++i) {
                try {
                    blocks.emplace_back(Allocate(size), size);
                    refusals += blocks.back().first == nullptr;
                } catch (std::bad_alloc const&) {
                    ++refusals;
                }
            }
        }
        EXPECT_LE(refusals, 1);
        for (auto const& [block, size] : blocks) {
            Dispose(block, size);
        }
        ASSERT_EQ(BlocksInUse(), before);
    }
    platform::SetAllocationFilter(nullptr);
}

using SmallBlockAllocatorDeathTest = ::testing::Test;

TEST_F(SmallBlockAllocatorDeathTest, HeapServesAllIfItCannotBeginOrHasNotBegun) {
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
        InThreads(4,
                  [&](int inThread) { blocks[static_cast<std::size_t>(inThread)] = Allocate(48); });
        for (void* const block : blocks) {
            std::memset(block, 0xFF, 48);
            Dispose(block, 48);
        }
        std::_Exit(Managers::AreReady() == inWithMemory ? 0 : 1);
    };
    EXPECT_EXIT(begin(false), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(begin(true), ::testing::ExitedWithCode(0), "");
}

/// Blocks that threads take from each other, of classes of every kind.
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

/// Takes blocks in bursts that are larger than what a thread keeps, marks them, and checks that
/// they stay as they are until it disposes of them or hands them over.
void Churn(Exchange& ioExchange, std::uint32_t inSeed, int inBursts) {
    std::uint32_t random = inSeed * 2654435761U + 1;
    std::array<void*, 400> blocks{};
    for (int burst = 0; burst < inBursts; ++burst) {
        random = random * 1664525U + 1013904223U;
        std::size_t const place = (random >> 8) % ioExchange.places.size();
        unsigned int const size = Exchange::SizeAt(place);
        for (void*& block : blocks) {
            block = Allocate(size);
            std::memcpy(block, &random, 4);
            std::memcpy(static_cast<char*>(block) + size - 4, &random, 4);
        }
        for (void* const block : blocks) {
            ASSERT_EQ(std::memcmp(block, &random, 4), 0);
            ASSERT_EQ(std::memcmp(static_cast<char*>(block) + size - 4, &random, 4), 0);
            Dispose(block, size);
        }
        ioExchange.Put(place, Allocate(size));
    }
}

TEST(SmallBlockAllocator, ThreadsNeverHoldTheSameBlock) {
    ASSERT_TRUE(Managers::AreReady());
    std::int32_t const before = BlocksInUse();
    {
        Exchange exchange;
        InThreads(
            4, [&](int inThread) { Churn(exchange, static_cast<std::uint32_t>(inThread), 300); });
    }
    EXPECT_EQ(BlocksInUse(), before);
}

TEST(SmallBlockAllocator, MemoryIsBoundedWhereOneAllocatesAndAnotherDisposes) {
    std::array<Blocks, 2> belts{Blocks(2000), Blocks(2000)};
    boost::barrier turn(2);
    InThreads(2, [&](int inThread) {
        for (std::size_t round = 0; round < 101; ++round) {
            for (void*& block : belts[(round + static_cast<std::size_t>(inThread)) % 2]) {
                if (inThread == 0) {
                    block = Allocate(64);
                } else {
                    Dispose(std::exchange(block, nullptr), 64);
                }
            }
            turn.wait();
        }
    });
    for (void* const block : belts[0]) {
        Dispose(block, 64);
    }
    EXPECT_LE(ManagerOf(64).Count().bytes, 1'200'000U); // of 13 million that went through

    Blocks many(20000);
    for (void*& block : many) {
        block = Allocate(64);
    }
    for (void* const block : many) {
        Dispose(block, 64);
    }
    EXPECT_LE(ManagerOf(64).Count().blocksInUse, (256 + 2 * 16) * 1024 / 64 + 1);
    ReleaseStock();
    EXPECT_EQ(ManagerOf(64).Count().chunks, 1U);
}

TEST(SmallBlockAllocator, CopyOfTheProcessAllocatesWhateverOthersDid) {
    Exchange exchange;
    std::atomic<bool> isDone{false};
    std::vector<std::thread> threads;
    for (std::uint32_t i = 0; i < 3; ++i) {
        threads.emplace_back([&, i] {
            while (!isDone) {
                Churn(exchange, i, 1);
            }
        });
    }
    for (int round = 0; round < 30; ++round) {
        pid_t const child = ::fork();
        if (child == 0) {
            Exchange own;
            Churn(own, 7, 20);
            ::_exit(::testing::Test::HasFailure() ? 1 : 0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << round;
    }
    isDone = true;
    for (auto& thread : threads) {
        thread.join();
    }
}

} // namespace

} // namespace brindle::utility::SmallBlockAllocator
