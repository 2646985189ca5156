#include "platform/portable/LoopWakeUp.h"
#include "platform/portable/MessageInbox.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <functional>
#include <thread>

using namespace brindle::platform;

namespace {

/// Calls a function of the thread's choice between the steps of an inbox.
struct Scripted {
    inline static thread_local std::function<void()> onPause = [] {};
    static void Pause() noexcept { onPause(); }
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
        do {
            EXPECT_TRUE(!HasNext() || IsReadable());
            Pop();
            Settle();
        } while (HasNext());
        EXPECT_FALSE(IsReadable());
    }
};

/// A loop that looks into its inbox only when it was woken.
struct WokenLoop {
    struct Wake : WakeUpFunction {
        explicit Wake(int& outEvents) : events(outEvents) {}
        bool Call() noexcept override { return ++events > 0; }
        int& events;
    };
    void Push() {
        static_cast<void>(inbox.Push(new Numbered(0)));
        wakeUp.Call();
    }
    void Turn() {
        for (std::uint64_t const until = wakeUp.Gather(inbox); inbox.Popped() < until;) {
            inbox.Pop();
        }
    }
    void TurnWhileWoken() {
        for (; events > 0; Turn()) {
            --events;
        }
    }
    Inbox inbox;
    LoopWakeUp<Scripted> wakeUp;
    int events = 0;
};

} // namespace

TEST(LoopWakeUp, NoMessageIsLeftWhereverAThreadHalts) {
    WokenLoop loop;
    boost::intrusive_ptr<WakeUpFunction> const wake(new WokenLoop::Wake(loop.events));
    auto const push = [&] { loop.Push(); };
    auto const set = [&] { loop.wakeUp.Clear(), static_cast<void>(loop.wakeUp.Set(wake)); };
    auto const turn = [&] { loop.TurnWhileWoken(); };
    auto const goOn = [&] { push(), turn(), push(), turn(); };
    std::function<void()> const cases[][2] = {
        {push, goOn}, {push, turn}, {goOn, push}, {set, push}};
    set();
    for (auto const& [halted, others] : cases) {
        int step = 0;
        for (int left = 0; left <= 0;) {
            left = ++step;
            Scripted::onPause = [&left, &then = others] { --left == 0 ? then() : void(); };
            halted();
            Scripted::onPause = [] {};
            turn();
            EXPECT_EQ(Numbered::S_alive, 0);
            goOn();
            EXPECT_EQ(Numbered::S_alive, 0);
        }
        EXPECT_GT(step, 2);
    }
}

TEST(MessageInbox, IsReadableWhileMessagesWaitWhereverAThreadHalts) {
    Inbox inbox;
    auto const push = [&] { static_cast<void>(inbox.Push(new Numbered(0))); };
    auto const settle = [&] { push(), inbox.HasNext(), inbox.Pop(), inbox.Settle(); };
    auto const othersGoOn = [&] { push(), inbox.PopAll(), push(), inbox.PopAll(); };
    std::function<void()> const cases[][2] = {{push, othersGoOn}, {settle, push}};
    for (auto const& [halted, others] : cases) {
        int step = 0;
        for (int left = 0; left <= 0;) {
            left = ++step;
            Scripted::onPause = [&left, &goOn = others] { --left == 0 ? goOn() : void(); };
            halted();
            Scripted::onPause = [] {};
            inbox.PopAll();
            othersGoOn();
            EXPECT_EQ(Numbered::S_alive, 0);
        }
        EXPECT_GT(step, 2);
    }
}

TEST(MessageInbox, KeepsTheOrderOfEachPosterAndReleasesWhatIsLeft) {
    constexpr int kEach = 3000;
    Inbox inbox;
    auto const post = [&](int inFirst) {
        Scripted::onPause = [step = inFirst]() mutable {
            ++step % 7 == 0 ? std::this_thread::yield() : void();
        };
        for (int i = inFirst; i < inFirst + kEach; ++i) {
            static_cast<void>(inbox.Push(new Numbered(i))); // refused once it is closed
        }
    };
    int next[] = {0, kEach};
    std::thread one(post, next[0]), two(post, next[1]);
    for (int popped = 0; popped < 5000; ++popped) {
        for (; !inbox.HasNext(); inbox.Await()) {
            inbox.Settle();
        }
        int const number = static_cast<Numbered&>(*inbox.Pop()).number;
        ASSERT_EQ(number, next[number / kEach]++);
    }
    inbox.Close(); // while they post
    EXPECT_FALSE(inbox.HasNext());
    one.join(), two.join();
    EXPECT_EQ(Numbered::S_alive, 0);
}
