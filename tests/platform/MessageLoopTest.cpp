#include "platform/posix/MessageInbox.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

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

struct Numbered : Message {
    explicit Numbered(int inNumber) : Message(nullptr), number(inNumber) { ++S_alive; }
    ~Numbered() override { --S_alive; }
    void Handle() noexcept override {}
    int const number;
    inline static std::atomic<int> S_alive{0};
};

struct Inbox : MessageInbox<Scripted> {
    bool IsReadable() const {
        pollfd watched{Descriptor(), POLLIN, 0};
        return ::poll(&watched, 1, 0) == 1;
    }
    void PopAll() {
        while (HasNext()) {
            EXPECT_TRUE(IsReadable());
            Pop();
            Settle();
        }
        EXPECT_FALSE(IsReadable());
    }
};

/// Does something and, before its n-th step of those that others may come in between, something
/// else. Whether it has as many.
bool Interrupt(int inStep, std::function<void()> const& inFirst,
               std::function<void()> const& inOther) {
    Scripted::onPause = [&] {
        if (--inStep == 0) {
            inOther();
        }
    };
    inFirst();
    Scripted::onPause = nullptr;
    return inStep <= 0;
}

} // namespace

TEST(MessageInbox, IsReadableWhileMessagesWaitWhereverAnotherHalts) {
    Inbox inbox;
    auto const push = [&] { inbox.Push(new Numbered(0)); };
    auto const othersGoOn = [&] {
        for (int round = 0; round < 2; ++round) {
            push();
            EXPECT_TRUE(inbox.IsReadable());
            inbox.PopAll();
        }
    };
    for (int step = 1; Interrupt(step, push, othersGoOn); ++step) {
        EXPECT_TRUE(!inbox.HasNext() || inbox.IsReadable());
        EXPECT_EQ(inbox.HasNext(), step == 1);
        inbox.Pop();
        inbox.Settle();
        othersGoOn();
    }
    for (int step = 1; Interrupt(
             step, [&] { inbox.Settle(); }, push);
         ++step) {
        EXPECT_TRUE(inbox.IsReadable());
        inbox.PopAll();
    }
}

TEST(MessageInbox, KeepsTheOrderOfEachPosterAndReleasesWhatIsLeft) {
    constexpr int kEach = 3000;
    Inbox inbox;
    auto const post = [&](int inFirst) {
        Scripted::onPause = [step = inFirst]() mutable {
            if (++step % 7 == 0) {
                std::this_thread::yield();
            }
        };
        for (int i = inFirst; i < inFirst + kEach; ++i) {
            inbox.Push(new Numbered(i));
        }
    };
    int next[] = {0, kEach};
    std::thread one(post, next[0]), two(post, next[1]);
    for (int popped = 0; popped < 5000; ++popped) {
        while (!inbox.HasNext()) {
            inbox.Settle();
            inbox.Await();
        }
        int const number = static_cast<Numbered&>(*inbox.Pop()).number;
        ASSERT_EQ(number, next[number / kEach]++);
    }
    inbox.Close(); // while they post
    EXPECT_FALSE(inbox.HasNext());
    one.join(), two.join();
    EXPECT_EQ(Numbered::S_alive, 0);
}
