#include "platform/posix/MessageInbox.h"

#include <boost/thread/barrier.hpp>
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <thread>
#include <vector>

using namespace brindle::platform;

namespace {

/// Calls what the thread has asked for between the steps of an inbox.
struct Scripted {
    inline static thread_local std::function<void()> onPause;
    static void Pause() noexcept {
        if (onPause) {
            onPause();
        }
    }
};

struct Inbox : MessageInbox<Scripted> {
    bool IsReadable() const {
        pollfd watched{Descriptor(), POLLIN, 0};
        return ::poll(&watched, 1, 0) == 1;
    }
};

std::atomic<int> S_messages{0};

struct Numbered : Message {
    explicit Numbered(int inNumber) : Message(nullptr), number(inNumber) { ++S_messages; }
    ~Numbered() override { --S_messages; }
    void Handle() noexcept override {}
    int const number;
};

int PopNumber(Inbox& ioInbox) {
    return static_cast<Numbered&>(*ioInbox.Pop()).number;
}

/// Does something on a thread that comes to a halt at its `inPause`-th pause, if it has as many,
/// then something else meanwhile; then the thread goes on to its end.
bool WithOneHalted(int inPause, std::function<void()> const& inHalted,
                   std::function<void()> const& inMeanwhile) {
    boost::barrier halt(2), go(2);
    int pause = 0;
    bool hasHalted = false;
    auto const meet = [&](bool inHalt) {
        if (inHalt && !hasHalted) {
            hasHalted = true;
            halt.wait();
            go.wait();
        }
    };
    std::thread thread([&] {
        Scripted::onPause = [&] { meet(++pause == inPause); };
        inHalted();
        bool const halted = hasHalted;
        meet(true);
        hasHalted = halted;
    });
    halt.wait();
    inMeanwhile();
    go.wait();
    thread.join();
    return hasHalted;
}

} // namespace

TEST(MessageInbox, IsReadableWhileMessagesWaitWhereverAPosterHalts) {
    bool hasHalted = true;
    for (int pause = 1; hasHalted; ++pause) {
        Inbox inbox;
        hasHalted = WithOneHalted(
            pause, [&] { inbox.Push(new Numbered(0)); },
            [&] {
                for (int round = 0; round < 2; ++round) {
                    inbox.Push(new Numbered(1));
                    inbox.Push(new Numbered(2));
                    EXPECT_TRUE(inbox.IsReadable());
                    while (inbox.HasNext()) {
                        EXPECT_TRUE(inbox.IsReadable());
                        inbox.Pop();
                        inbox.Settle();
                    }
                    EXPECT_FALSE(inbox.IsReadable());
                }
            });
        EXPECT_TRUE(!inbox.HasNext() || inbox.IsReadable());
        while (inbox.Pop() != nullptr) {
        }
        inbox.Settle();
        EXPECT_FALSE(inbox.IsReadable());
        inbox.Push(new Numbered(3));
        EXPECT_TRUE(inbox.IsReadable());
        EXPECT_GT(pause, hasHalted ? 0 : 4);
    }
}

TEST(MessageInbox, IsReadableWhileMessagesWaitWhereverTheOwnerHalts) {
    bool hasHalted = true;
    for (int pause = 1; hasHalted; ++pause) {
        Inbox inbox;
        inbox.Push(new Numbered(0));
        hasHalted = WithOneHalted(
            pause,
            [&] {
                inbox.Gather();
                inbox.Pop();
                inbox.Settle();
            },
            [&] { inbox.Push(new Numbered(1)); });
        EXPECT_TRUE(inbox.IsReadable());
        EXPECT_TRUE(inbox.HasNext());
        EXPECT_GT(pause, hasHalted ? 0 : 2);
    }
}

TEST(MessageInbox, KeepsTheOrderOfEachOfManyPostersAndReleasesAll) {
    constexpr int kPosters = 3, kEach = 3000;
    Inbox inbox;
    std::vector<std::thread> posters;
    std::atomic<int> refused{0};
    for (int poster = 0; poster < kPosters; ++poster) {
        posters.emplace_back([&, poster] {
            std::minstd_rand random(static_cast<unsigned>(poster + 1));
            Scripted::onPause = [&] {
                if (random() % 8 == 0) {
                    std::this_thread::yield();
                }
            };
            for (int i = 0; i < kEach; ++i) {
                refused += inbox.Push(new Numbered(poster * kEach + i)) ? 0 : 1;
            }
        });
    }
    Scripted::onPause = [] { std::this_thread::yield(); };
    std::vector<int> next(kPosters, 0);
    for (int left = kPosters * kEach * 9 / 10; left > 0; --left) {
        while (!inbox.HasNext()) {
            inbox.Settle();
            inbox.Await();
        }
        int const number = PopNumber(inbox);
        EXPECT_EQ(number % kEach, next[static_cast<std::size_t>(number / kEach)]++);
    }
    inbox.Close();
    Scripted::onPause = nullptr;
    for (std::thread& poster : posters) {
        poster.join();
    }
    EXPECT_FALSE(inbox.Push(new Numbered(0)));
    EXPECT_EQ(S_messages, 0);
    EXPECT_LE(refused, kPosters * kEach / 10);
}
