#include "platform/CompletionPort.h"

#include "platform/portable/PacketPort.h"
#include "tests/support/AllocationFailure.h"
#include "utility/src/base/NoPause.h"

#include <boost/thread/barrier.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <sched.h>
#include <string>
#include <thread>
#include <vector>

namespace brindle::platform {

namespace {

/// Often lets another thread run between two atomic steps.
struct RandomPause {
    static void Pause() noexcept {
        static std::atomic<std::uint32_t> seeds{1};
        thread_local std::uint32_t random = seeds.fetch_add(0x9E3779B9);
        random = random * 1664525 + 1013904223;
        if (random >> 28 == 0) {
            sched_yield();
        }
    }
    static void BeforeSleep() noexcept { Pause(); }
};

/// Halts one thread at one of its pauses, as a scheduler does that gives the processor to others.
struct Halting {
    static void Pause() noexcept {
        if (t_mayHalt && --S_pausesLeft == 0) {
            while (!S_isResumed) {
                sched_yield();
            }
        }
    }
    static void BeforeSleep() noexcept { ++S_sleeps; }
    static void HaltAt(int inPause) {
        S_isResumed = false;
        S_pausesLeft = inPause;
    }

    inline static thread_local bool t_mayHalt = false;
    inline static std::atomic<int> S_pausesLeft{0}, S_sleeps{0};
    inline static std::atomic<bool> S_isResumed{false};
};

using std::chrono::milliseconds;

Deadline InSystemTime(int inMilliseconds) {
    return Deadline::At(std::chrono::system_clock::now() + milliseconds(inMilliseconds));
}

void* Packet(std::uintptr_t inValue) {
    return reinterpret_cast<void*>(inValue);
}

/// From one time stamp to another, of a counter that orders all events.
struct Interval {
    std::uint64_t begun;
    std::uint64_t ended;
};

/// Checks that a port is linearizable: that a queue used by one thread at a time could have given
/// the same results, in some order of the operations that respects their times.
template <typename Port>
void ExpectQueue(std::size_t inTakers, std::size_t inEach) {
    constexpr std::size_t kPosters = 3;
    Port port;
    std::atomic<std::uint64_t> clock{0};
    std::vector<Interval> posts(kPosters * inEach);
    std::vector<Interval> takes(kPosters * inEach, {~0ull, 0});
    std::vector<std::vector<Interval>> nothing(inTakers);
    std::vector<std::thread> threads;
    for (std::vector<Interval>& mine : nothing) {
        threads.emplace_back([&] {
            for (std::uint32_t i = 0;; ++i) {
                Deadline const deadlines[] = {Deadline::Never(), Deadline::In(milliseconds(0)),
                                              Deadline::In(milliseconds(1)), InSystemTime(1)};
                void* packet = nullptr;
                std::uint64_t const begun = clock++;
                bool const isTaken = port.Wait(packet, deadlines[i % 4]);
                Interval const interval{begun, clock++};
                if (!isTaken) {
                    mine.push_back(interval);
                } else if (auto const value = reinterpret_cast<std::uintptr_t>(packet); value > 0) {
                    EXPECT_EQ(takes[value - 1].ended, 0) << "taken twice";
                    takes[value - 1] = interval;
                } else {
                    break;
                }
            }
        });
    }
    std::atomic<std::size_t> posting{kPosters};
    for (std::size_t poster = 0; poster < kPosters; ++poster) {
        threads.emplace_back([&, poster] {
            for (std::size_t i = poster * inEach; i < (poster + 1) * inEach; ++i) {
                std::uint64_t const begun = clock++;
                EXPECT_TRUE(port.Post(Packet(i + 1)));
                posts[i] = {begun, clock++};
            }
            if (--posting == 0) {
                for (std::size_t i = 0; i < inTakers; ++i) {
                    EXPECT_TRUE(port.Post(nullptr));
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    // For each end of a post, the latest beginning of a take of this packet or one posted before.
    std::vector<Interval> lastTake;
    for (std::size_t i = 0; i < posts.size(); ++i) {
        lastTake.push_back({posts[i].ended, takes[i].begun});
    }
    std::sort(lastTake.begin(), lastTake.end(),
              [](auto const& inLHS, auto const& inRHS) { return inLHS.begun < inRHS.begun; });
    for (std::size_t i = 1; i < lastTake.size(); ++i) {
        lastTake[i].ended = std::max(lastTake[i].ended, lastTake[i - 1].ended);
    }
    auto const expectTakenFirst = [&](std::uint64_t inPostedBefore, std::uint64_t inEnd) {
        auto const next =
            std::partition_point(lastTake.begin(), lastTake.end(),
                                 [&](auto const& inPost) { return inPost.begun < inPostedBefore; });
        ASSERT_LE(next == lastTake.begin() ? 0 : std::prev(next)->ended, inEnd);
    };
    for (std::size_t i = 0; i < posts.size(); ++i) {
        ASSERT_LT(posts[i].begun, takes[i].ended) << "never taken, or before it was posted";
        expectTakenFirst(posts[i].begun, takes[i].ended);
    }
    for (auto const& one : nothing) {
        for (Interval const& interval : one) {
            expectTakenFirst(interval.begun, interval.ended);
        }
    }
}

TEST(CompletionPort, IsFirstInFirstOutAcrossThreads) {
    for (std::size_t const takers : {1u, 3u}) {
        ExpectQueue<PacketPort<RandomPause, 4>>(takers, 4000);
        ExpectQueue<PacketPort<utility::NoPause, 4>>(takers, 10000);
        ExpectQueue<CompletionPort>(takers, 20000);
    }
}

/// Each sleeper keeps its packet until all have one.
template <typename Port>
void ExpectAllWake(unsigned int inSleepers, int inRounds) {
    Port port;
    boost::barrier round(inSleepers + 1);
    std::vector<std::thread> sleepers;
    for (unsigned int i = 0; i < inSleepers; ++i) {
        sleepers.emplace_back([&] {
            void* packet = nullptr;
            for (int j = 0; j < inRounds && port.Wait(packet, Deadline::Never()); ++j) {
                round.wait();
            }
        });
    }
    for (int j = 0; j < inRounds; ++j) {
        for (unsigned int i = 0; i < inSleepers; ++i) {
            EXPECT_TRUE(port.Post(nullptr));
        }
        round.wait();
    }
    for (std::thread& sleeper : sleepers) {
        sleeper.join();
    }
}

TEST(CompletionPort, AsManyPostsWakeAsManySleepers) {
    ExpectAllWake<CompletionPort>(3, 3000);
    ExpectAllWake<PacketPort<RandomPause, 2>>(3, 2000);
    // More than the slots that there are at first to announce what one touches.
    ExpectAllWake<PacketPort<RandomPause, 2>>(80, 20);
}

/// Posts to two sleeping workers, one of which, or a poster, halts at the given pause. Returns how
/// many of two packets the others have received.
int ReceivedBesideAHaltedThread(bool inHaltsPoster, int inPause) {
    PacketPort<Halting, 2> port;
    std::atomic<int> received{0};
    Halting::S_sleeps = 0;
    auto const post = [&](bool inMayHalt) {
        Halting::t_mayHalt = inMayHalt;
        EXPECT_TRUE(port.Post(Packet(1)));
    };
    auto const work = [&] {
        Halting::t_mayHalt = !inHaltsPoster;
        void* packet = nullptr;
        while (port.Wait(packet, Deadline::Never()) && packet != nullptr) {
            ++received;
        }
    };
    std::thread workers[] = {std::thread(work), std::thread(work)};
    while (Halting::S_sleeps < 2) {
        sched_yield();
    }
    Halting::HaltAt(inPause);
    std::thread first(post, true), second(post, false);
    second.join();
    auto const limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (received == 0 && std::chrono::steady_clock::now() < limit) {
        sched_yield();
    }
    int const result = received;
    Halting::S_isResumed = true;
    first.join();
    EXPECT_TRUE(port.Post(nullptr));
    EXPECT_TRUE(port.Post(nullptr));
    for (std::thread& worker : workers) {
        worker.join();
    }
    EXPECT_EQ(received, 2);
    return result;
}

TEST(CompletionPort, NoPacketWaitsForAThreadThatGetsNoProcessor) {
    for (bool const haltsPoster : {false, true}) {
        for (int pause = 1; pause <= 12; ++pause) {
            SCOPED_TRACE((haltsPoster ? "a poster halts at pause " : "a worker halts at pause ") +
                         std::to_string(pause));
            EXPECT_GT(ReceivedBesideAHaltedThread(haltsPoster, pause), 0);
        }
    }
}

TEST(CompletionPort, AThreadThatFallsAsleepBesideAClaimedPromiseWatches) {
    for (bool const isPromisedBefore : {false, true}) {
        Sleepers<utility::NoPause> sleepers;
        auto const woken = sleepers.Enroll();
        if (isPromisedBefore) {
            sleepers.WakeOne();
        }
        auto const late = sleepers.Enroll();
        sleepers.WakeOne();
        EXPECT_TRUE(sleepers.Sleep(woken, Deadline::Never())) << "claims the promise";
        EXPECT_TRUE(sleepers.Sleep(late, InSystemTime(10'000))) << "looks long before the deadline";
    }
}

TEST(CompletionPort, WaitsAsLongAsItIsTold) {
    CompletionPort port;
    void* packet = Packet(1);
    EXPECT_FALSE(port.Take(packet));
    EXPECT_EQ(packet, nullptr);

    // A signal interrupts the sleep, and does not end it.
    std::signal(SIGUSR1, [](int) {});
    auto const begun = std::chrono::system_clock::now();
    std::atomic<bool> isOver{false};
    std::thread signals([&isOver, waiter = pthread_self()] {
        while (!isOver) {
            pthread_kill(waiter, SIGUSR1);
            sched_yield();
        }
    });
    EXPECT_FALSE(port.Wait(packet, InSystemTime(30)));
    EXPECT_GE(std::chrono::system_clock::now() - begun, std::chrono::milliseconds(30));
    isOver = true;
    signals.join();

    std::thread poster([&] { EXPECT_TRUE(port.Post(Packet(7))); });
    EXPECT_TRUE(port.Wait(packet, InSystemTime(3'600'000)));
    EXPECT_EQ(packet, Packet(7));
    poster.join();
}

TEST(CompletionPort, RefusesOnlyWhatItHasNoMemoryFor) {
    for (int successes = 0; successes < 5; ++successes) {
        PacketPort<utility::NoPause, 2> port;
        std::uintptr_t accepted = 0;
        {
            tests::AllocationFailure const failure(successes);
            while (accepted < 100 && port.Post(Packet(accepted + 1))) {
                ++accepted;
            }
        }
        EXPECT_EQ(accepted, 2 + 2 * static_cast<std::uintptr_t>(successes));
        {
            tests::AllocationFailure const failure(0);
            EXPECT_TRUE(port.Post(nullptr));
        }
        EXPECT_TRUE(port.Post(Packet(++accepted)));
        void* packet = nullptr;
        for (std::uintptr_t value = 1; value <= accepted; ++value) {
            EXPECT_TRUE(port.Take(packet));
            EXPECT_EQ(packet, Packet(value));
        }
        EXPECT_TRUE(port.Wait(packet, Deadline::Never()));
        EXPECT_EQ(packet, nullptr);
        EXPECT_FALSE(port.Take(packet));
    }
}

} // namespace

} // namespace brindle::platform
