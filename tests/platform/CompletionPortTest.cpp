#include "platform/CompletionPort.h"

#include "platform/portable/PacketPort.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/InThreads.h"
#include "tests/support/RandomDelays.h"
#include "utility/src/base/NoPause.h"

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
    std::atomic<std::size_t> posting{kPosters};
    auto const post = [&](std::size_t inPoster) {
        for (std::size_t i = inPoster * inEach; i < (inPoster + 1) * inEach; ++i) {
            posts[i].begun = clock++;
            EXPECT_TRUE(port.Post(Packet(i + 1)));
            posts[i].ended = clock++;
        }
        for (std::size_t i = --posting == 0 ? inTakers : 0; i > 0; --i) {
            EXPECT_TRUE(port.Post(nullptr));
        }
    };
    auto const take = [&](std::vector<Interval>& ioNothing) {
        for (std::uint32_t i = 0;; ++i) {
            Deadline const deadlines[] = {Deadline::Never(), Deadline::In(milliseconds(0)),
                                          Deadline::In(milliseconds(1)), InSystemTime(1)};
            void* packet = nullptr;
            std::uint64_t const begun = clock++;
            bool const isTaken = port.Wait(packet, deadlines[i % 4]);
            Interval const interval{begun, clock++};
            if (!isTaken) {
                ioNothing.push_back(interval);
            } else if (auto const value = reinterpret_cast<std::uintptr_t>(packet); value > 0) {
                EXPECT_EQ(takes[value - 1].ended, 0) << "taken twice";
                takes[value - 1] = interval;
            } else {
                break;
            }
        }
    };
    tests::InThreads(static_cast<unsigned>(kPosters + inTakers), [&](std::size_t inThread) {
        inThread < kPosters ? post(inThread) : take(nothing[inThread - kPosters]);
    });

    // For each time, the latest beginning of a take of a packet whose post had ended.
    std::vector<std::uint64_t> lastTake(clock);
    for (std::size_t i = 0; i < posts.size(); ++i) {
        ASSERT_LT(posts[i].begun, takes[i].ended) << "never taken, or before it was posted";
        lastTake[posts[i].ended] = takes[i].begun;
    }
    for (std::size_t time = 1; time < lastTake.size(); ++time) {
        lastTake[time] = std::max(lastTake[time], lastTake[time - 1]);
    }
    for (std::size_t i = 0; i < posts.size(); ++i) {
        ASSERT_LE(lastTake[posts[i].begun], takes[i].ended);
    }
    for (auto const& one : nothing) {
        for (Interval const& interval : one) {
            ASSERT_LE(lastTake[interval.begun], interval.ended);
        }
    }
}

TEST(CompletionPort, IsFirstInFirstOutAcrossThreads) {
    for (std::size_t const takers : {1u, 3u}) {
        ExpectQueue<PacketPort<tests::RandomDelays, 4>>(takers, 4000);
        ExpectQueue<PacketPort<utility::NoPause, 4>>(takers, 10000);
        ExpectQueue<CompletionPort>(takers, 20000);
    }
}

/// Each sleeper keeps its packet until all have one.
template <typename Port>
void ExpectAllWake(unsigned int inSleepers, int inRounds) {
    Port port;
    tests::Barrier round(inSleepers + 1);
    tests::InThreads(inSleepers + 1, [&](unsigned int inThread) {
        void* packet = nullptr;
        for (int i = 0; i < inRounds; ++i) {
            if (inThread > 0) {
                EXPECT_TRUE(port.Wait(packet, Deadline::Never()));
            }
            for (unsigned int posts = inThread > 0 ? 0 : inSleepers; posts > 0; --posts) {
                EXPECT_TRUE(port.Post(nullptr));
            }
            round.wait();
        }
    });
}

TEST(CompletionPort, AsManyPostsWakeAsManySleepers) {
    ExpectAllWake<CompletionPort>(3, 3000);
    ExpectAllWake<PacketPort<tests::RandomDelays, 2>>(3, 2000);
    // More than the slots that there are at first to announce what one touches.
    ExpectAllWake<PacketPort<tests::RandomDelays, 2>>(80, 20);
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
    for (auto const limit = Deadline::In(milliseconds(10'000));
         received == 0 && !limit.HasPassed();) {
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
    void* packet = nullptr;
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
    EXPECT_GE(std::chrono::system_clock::now() - begun, milliseconds(30));
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
        for (std::uintptr_t taken = 1; taken <= accepted + 2; ++taken) {
            void* packet = &port;
            EXPECT_EQ(port.Take(packet), taken <= accepted + 1);
            EXPECT_EQ(packet, taken <= accepted ? Packet(taken) : nullptr);
        }
    }
}

} // namespace

} // namespace brindle::platform
