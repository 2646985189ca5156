#include <brindle/utility/SmallBlockAllocator.h>

#include "platform/AlignedMemory.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/InThreads.h"
#include "utility/src/memory/HeapRegistry.h"
#include "utility/src/memory/OwnerLock.h"
#include "utility/src/memory/RegionStore.h"
#include "utility/src/memory/RemoteFrees.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace brindle::utility::SmallBlockAllocator {

namespace {

using Blocks = std::vector<void*>;
using tests::InThreads;

std::uint64_t BlocksInUse() {
    return GetFigures().blocksInUse;
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

// Every class, so that the chunk is found for a block at every place in every kind of chunk.
TEST(SmallBlockAllocator, ChunksGrowWithTheClassAndAreReclaimedWhenEmpty) {
    ReleaseStock();
    for (std::size_t index = 0; index < SizeClasses::kOfSmallChunks; ++index) {
        unsigned int const size = SizeClasses::kBlockSizes[index];
        SCOPED_TRACE(size);
        std::uint64_t const second = size <= 1024 ? 66080 : 925152;
        Figures const before = GetFigures(size);
        EXPECT_EQ(before.blocksInUse, 0U);
        Blocks blocks(before.blocksHeld);
        std::generate(blocks.begin(), blocks.end(), [&] { return Allocate(size); });
        std::uint64_t bytes = before.bytesHeld;
        while (bytes < 2'800'000) {
            std::uint64_t const chunk = bytes >= 925152   ? 925152U
                                        : bytes >= second ? second
                                        : size <= 1024    ? 4128U
                                                          : 66080U;
            for (std::uint64_t i = 0; i < (chunk - 32) / size; ++i) {
                blocks.push_back(std::memset(Allocate(size), 0xFF, size));
            }
            bytes += chunk;
            if (chunk != 4128) {
                ASSERT_EQ(GetFigures(size).bytesHeld, bytes);
            }
        }
        Figures const full = GetFigures(size);
        EXPECT_EQ(full.bytesHeld, bytes);
        EXPECT_EQ(full.blocksHeld, blocks.size());
        EXPECT_EQ(full.blocksInUse, blocks.size());
        // Freed blocks are reused before a chunk is added.
        for (std::size_t i = 0; i < blocks.size(); i += 7) {
            Dispose(blocks[i], size);
        }
        for (std::size_t i = 0; i < blocks.size(); i += 7) {
            blocks[i] = Allocate(size);
        }
        EXPECT_EQ(GetFigures(size).bytesHeld, bytes);
        std::size_t const step = blocks.size() % 7919 != 0 ? 7919 : 1;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            Dispose(blocks[i * step % blocks.size()], size);
        }
        Figures const after = GetFigures(size);
        EXPECT_EQ(after.blocksInUse, 0U);
        EXPECT_EQ(after.chunksHeld, size <= 128 || size == 1024 ? 1U : 0U);
    }
    ReleaseStock();
    EXPECT_LE(GetFigures().bytesHeld, 3 * Region::kSize);
}

TEST(SmallBlockAllocator, ClassThatKeepsNoChunkReturnsItWithItsOnlyBlock) {
    ReleaseStock();
    void* const block = Allocate(144);
    EXPECT_EQ(GetFigures(144).chunksHeld, 1U);
    Dispose(block, 144);
    EXPECT_EQ(GetFigures(144).chunksHeld, 0U);
    // The memory of that chunk is reused for the next small chunks.
    auto const before = GetFigures().bytesHeld;
    Blocks chunks(64);
    for (void*& chunk : chunks) {
        chunk = std::memset(Allocate(4128), 0xFF, 4128);
    }
    EXPECT_EQ(GetFigures(4128).blocksInUse, 64U);
    EXPECT_EQ(GetFigures().bytesHeld, before);
    for (void* const chunk : chunks) {
        Dispose(chunk, 4128);
    }
    EXPECT_EQ(GetFigures(4128).blocksInUse, 0U);
}

TEST(SmallBlockAllocator, BlocksOfTheSystemHeapGoBackThere) {
    for (unsigned int const size : {0U, 32U, 144U, 1024U, 4128U, 8192U, 8193U, 66080U}) {
        void* const own = Allocate(size);
        Dispose(platform::AllocateAligned(size, 16), size);
        Dispose(nullptr, size);
        Dispose(own, size);
    }
    int const foreign = 0;
    EXPECT_FALSE(RegionStore::Holds(&foreign));
    EXPECT_FALSE(RegionStore::Holds(reinterpret_cast<void*>(std::uintptr_t{1} << 60)));
}

TEST(SmallBlockAllocator, RefusalOfAnyAllocationLeavesItConsistent) {
    std::uint64_t const before = BlocksInUse();
    static std::atomic<int> S_untilRefusal{-1};
    for (int n = 0; S_untilRefusal < 0; ++n) {
        ReleaseStock();
        S_untilRefusal = n;
        platform::SetAllocationFilter([](std::size_t) { return S_untilRefusal.fetch_sub(1) != 0; });
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
        platform::SetAllocationFilter(nullptr);
        EXPECT_LE(refusals, 1);
        ASSERT_EQ(BlocksInUse(), before);
    }
}

using SmallBlockAllocatorDeathTest = ::testing::Test;

TEST_F(SmallBlockAllocatorDeathTest, SystemHeapServesAllBeforeAndWithoutInitialization) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const begin = [](bool inWithMemory) {
        if (!inWithMemory) {
            HeapRegistry::S_state = HeapRegistry::State::kInProgress; // as after a failure
            if (GetActualAllocationSize(5) != 5) {
                std::_Exit(1);
            }
        }
        Blocks blocks(4);
        InThreads(4, [&](unsigned int inThread) { blocks[inThread] = Allocate(48); });
        for (void* const block : blocks) {
            Dispose(std::memset(block, 0xFF, 48), 48);
        }
        std::_Exit(HeapRegistry::IsReady() == inWithMemory ? 0 : 1);
    };
    EXPECT_EXIT(begin(false), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(begin(true), ::testing::ExitedWithCode(0), "");
}

/// Places through which threads exchange blocks of several classes.
struct Exchange {
    static constexpr unsigned int kSizes[] = {4, 8, 32, 128, 144, 1024, 1152, 4128, 8192};

    std::vector<std::atomic<void*>> places{900};

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

/// Allocates blocks in bursts of several chunks, fills in a mark, and checks that the mark is
/// intact before it frees the block. Also exchanges blocks with the other threads.
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
        for (std::size_t i = 0; i < std::size(Exchange::kSizes) * 5;
             i += std::size(Exchange::kSizes)) {
            std::size_t const other = (place + i) % ioExchange.places.size();
            ioExchange.Put(other, Allocate(Exchange::SizeAt(other)));
        }
    }
}

TEST(SmallBlockAllocator, ThreadsAndForkedChildrenNeverShareABlock) {
    std::uint64_t const before = BlocksInUse();
    std::optional<Exchange> exchange(std::in_place);
    std::atomic<bool> isDone{false};
    InThreads(4, [&](std::uint32_t inThread) {
        do {
            Churn(*exchange, inThread, 100);
            GetFigures(8);
        } while (inThread != 0 && !isDone);
        for (int round = 0; inThread == 0 && round < 20; ++round) {
            tests::ChildProcess child([] {
                Exchange own;
                Churn(own, 7, 20);
                return ::testing::Test::HasFailure() ? 1 : 0;
            });
            EXPECT_EQ(child.Wait(), 0) << round;
        }
        isDone = true;
    });
    exchange.reset();
    EXPECT_EQ(BlocksInUse(), before);
}

/// Frees the blocks in several threads, each its share in a scattered order, and takes the figures
/// while these threads still exist.
Figures AfterDisposalByIdlePool(Blocks const& inBlocks, unsigned int inSize) {
    constexpr unsigned int kThreads = 3;
    Figures figures;
    tests::Barrier turn(kThreads);
    InThreads(kThreads, [&](unsigned int inThread) {
        std::size_t const count = inBlocks.size() / kThreads;
        for (std::size_t i = 0; i < count; ++i) {
            Dispose(inBlocks[i * 7919 % count * kThreads + inThread], inSize);
        }
        turn.wait();
        if (inThread == 0) {
            figures = GetFigures();
        }
        turn.wait();
    });
    return figures;
}

// The thread that allocated the blocks is idle, or has ended.
TEST(SmallBlockAllocator, RemoteFreesReturnMemoryWithoutTheOwner) {
    for (bool const isGone : {false, true}) {
        for (unsigned int const size : {16U, 144U, 8192U}) {
            ReleaseStock();
            SCOPED_TRACE(std::to_string(size) + (isGone ? " of a thread that ended" : ""));
            Blocks blocks(32'000'000 / size / 3 * 3);
            auto const allocate = [&] {
                std::generate(blocks.begin(), blocks.end(), [&] { return Allocate(size); });
            };
            isGone ? std::thread(allocate).join() : allocate();
            auto const peak = GetFigures();
            EXPECT_GE(peak.bytesHeld, 32'000'000U);
            auto const after = AfterDisposalByIdlePool(blocks, size);
            // The regions that the store keeps, and those that each thread still uses.
            EXPECT_LE(after.bytesHeld, (8 + 2 * 6) * Region::kSize);
        }
    }
    EXPECT_EQ(BlocksInUse(), 0U);
}

TEST(SmallBlockAllocator, MemoryIsBoundedIfOneThreadAllocatesAndAnotherFrees) {
    std::array<Blocks, 2> belts{Blocks(20000), Blocks(20000)};
    tests::Barrier turn(2);
    InThreads(2, [&](unsigned int inThread) {
        for (unsigned int round = 0; round < 51; ++round) {
            for (void*& block : belts[(round + inThread) % 2]) {
                Dispose(std::exchange(block, inThread == 0 ? Allocate(64) : nullptr), 64);
            }
            turn.wait();
        }
    });
    EXPECT_LE(GetFigures(64).bytesHeld, 4'500'000U); // of 65 million bytes allocated in total
    for (void* const block : belts[0]) {
        Dispose(block, 64);
    }
    EXPECT_EQ(GetFigures(64).blocksInUse, 0U);
    EXPECT_LE(GetFigures(64).chunksHeld, 1U);
}

// Threads that call for the first time, or again, from destructors of thread-specific data.
TEST(SmallBlockAllocator, EndingThreadsLeakNothing) {
    pthread_key_t key;
    ASSERT_EQ(::pthread_key_create(
                  &key, [](void* inBlock) { Dispose(inBlock, 48), Dispose(Allocate(48), 48); }),
              0);
    auto const run = [&](bool inHasCalled) {
        if (inHasCalled) {
            Dispose(Allocate(48), 48);
        }
        ::pthread_setspecific(key, std::malloc(48));
    };
    std::thread(run, false).join();
    std::thread(run, true).join();
    auto const before = GetFigures();
    for (int i = 0; i < 50; ++i) {
        std::thread(run, i % 2 == 0).join();
    }
    EXPECT_EQ(GetFigures().bytesHeld, before.bytesHeld);
    EXPECT_EQ(GetFigures().blocksInUse, before.blocksInUse);
    ::pthread_key_delete(key);
}

/// Lets other threads run between any two atomic steps.
struct Yield {
    static void Pause() noexcept {
        thread_local unsigned int count = 0;
        if (++count % 3 == 0) {
            std::this_thread::yield();
        }
    }
};

// With few blocks, a push often finds the list empty, or makes the chunk empty.
TEST(RemoteFrees, EachBlockIsTakenOnceAndTheChunkIsNeverQueuedTwice) {
    struct Chunk {
        BasicRemoteFrees<Yield> remote;
        Chunk* nextInInbox = nullptr;
        std::array<std::uint32_t, 8> blocks{};
    } chunk;
    BasicInbox<Chunk, Yield> inbox;
    constexpr std::uint32_t kThreads = 4;
    constexpr std::uint32_t kRounds = 600;
    // The thread that may push a block next; 0 if the owner has it, ~0U if it has been pushed.
    std::array<std::atomic<std::uint32_t>, 8> holders{};
    std::atomic<std::uint32_t> used{0};
    std::atomic<int> queued{0};
    std::atomic<int> faults{0};
    std::atomic<std::uint32_t> pushed{0};
    InThreads(kThreads + 1, [&](std::uint32_t inThread) {
        if (inThread == 0) {
            for (std::uint32_t taken = 0, given = 0; taken < kRounds;) {
                for (std::uint32_t i = 0; i < holders.size() && given < kRounds; ++i) {
                    if (holders[i].load() == 0) {
                        ++used;
                        ++given;
                        holders[i] = 1 + given % kThreads;
                    }
                }
                for (Chunk* first = inbox.TakeAll(); first != nullptr;) {
                    Chunk* const next = first->nextInInbox;
                    faults += --queued != 0;
                    first->remote.ClearQueued();
                    first = next;
                }
                auto const list = chunk.remote.TakeAll();
                std::uint32_t length = 0;
                for (std::uint32_t link = list.first; link != 0; ++length) {
                    std::uint32_t const index = link / 4 - 1;
                    link = ReadLink(&chunk.blocks[index]);
                    faults += holders[index].exchange(0) != ~0U;
                }
                faults += length != list.count;
                used -= length;
                taken += length;
            }
            return;
        }
        while (pushed < kRounds) {
            std::array<std::uint32_t, 2> mine{};
            std::uint32_t count = 0;
            for (std::uint32_t i = 0; i < holders.size() && count < mine.size(); ++i) {
                if (holders[i].load() == inThread) {
                    mine[count++] = i;
                }
            }
            if (count == 0) {
                std::this_thread::yield();
                continue;
            }
            if (count == 2) {
                WriteLink(&chunk.blocks[mine[1]], (mine[0] + 1) * 4);
            }
            for (std::uint32_t i = 0; i < count; ++i) {
                holders[mine[i]] = ~0U;
            }
            auto const result = chunk.remote.Push((mine[count - 1] + 1) * 4, &chunk.blocks[mine[0]],
                                                  count, used.load());
            if (result.mustQueue) {
                faults += queued++ != 0;
                inbox.Push(&chunk);
            }
            pushed += count;
        }
    });
    EXPECT_EQ(faults, 0);
    EXPECT_EQ(used, 0U);
}

TEST(OwnerLock, OwnerAndVisitorsExcludeEachOther) {
    platform::PrepareBarriers();
    BasicOwnerLock<Yield> lock;
    int inside = 0; // not atomic, as the lock orders all accesses
    std::atomic<int> faults{0};
    std::atomic<int> visits{0};
    std::atomic<bool> isDone{false};
    auto const enter = [&] {
        faults += inside++ != 0;
        Yield::Pause();
        faults += --inside != 0;
    };
    InThreads(4, [&](std::uint32_t inThread) {
        if (inThread == 0) {
            for (int i = 0; i < 1000 || visits < 50; ++i) {
                lock.Lock();
                enter();
                lock.Unlock();
                if (i % 64 == 0) {
                    std::this_thread::yield();
                }
            }
            isDone = true;
        }
        while (inThread != 0 && !isDone) {
            std::this_thread::yield();
            BasicOwnerLock<Yield>::Visit const visit(lock);
            enter();
            ++visits;
        }
    });
    EXPECT_EQ(faults, 0);
}

} // namespace

} // namespace brindle::utility::SmallBlockAllocator
