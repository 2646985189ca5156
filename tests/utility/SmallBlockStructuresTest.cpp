#include "tests/support/InThreads.h"
#include "utility/src/memory/OwnerLock.h"
#include "utility/src/memory/RemoteFrees.h"

#include <gtest/gtest.h>

#include <array>

namespace brindle::utility {

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
    tests::InThreads(kThreads + 1, [&](std::uint32_t inThread) {
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
    tests::InThreads(4, [&](std::uint32_t inThread) {
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

} // namespace brindle::utility
