#include "platform/MessageLoop.h"

#include "platform/Fork.h"
#include "platform/portable/LoopWakeUp.h"
#include "platform/portable/MessageInbox.h"
#include "utility/src/base/NoPause.h"

#include <utility>

namespace brindle::platform {

namespace {

// Trivially destroyed, so that destructors of other thread-local objects may use them.
thread_local MessageQueue const* S_currentQueueP = nullptr;
thread_local std::uint32_t S_forkCount = 0; // when the current queue was made
thread_local bool S_threadHasEnded = false;

class QuitMessage : public Message {
public:
    explicit QuitMessage(bool& outHasQuit) noexcept : Message(nullptr), mHasQuit(outHasQuit) {}
    void Handle() noexcept override { mHasQuit = true; }

private:
    bool& mHasQuit;
};

} // namespace

struct MessageQueue::State {
    void HandleNext() noexcept {
        boost::intrusive_ptr<Message> const message = inbox.Pop();
        if (message->Target() == nullptr || !message->Target()->IsClosed()) {
            message->Handle();
        }
    }

    [[nodiscard]] bool Push(boost::intrusive_ptr<Message> inMessage) noexcept {
        if (!inbox.Push(std::move(inMessage))) {
            return false;
        }
        wakeUp.Call();
        return true;
    }

    MessageInbox<utility::NoPause> inbox;
    LoopWakeUp<utility::NoPause> wakeUp;
    bool hasQuit = false; // accessed by the owner only
    // Made in advance, so that telling a thread to quit needs no memory.
    boost::intrusive_ptr<Message> const quit{new QuitMessage(hasQuit)};
    std::atomic<bool> isQuitPosted{false};
};

/// Keeps the queue of a thread until the thread ends.
class MessageQueue::OfThread {
public:
    OfThread() noexcept = default;
    OfThread(OfThread const&) = delete;
    OfThread& operator=(OfThread const&) = delete;
    ~OfThread() {
        S_currentQueueP = nullptr;
        S_threadHasEnded = true;
        mQueue->mState->inbox.Close();
    }

    void Keep(boost::intrusive_ptr<MessageQueue> inQueue) noexcept {
        mQueue.detach(); // the parent's in a forked child: other threads may have been using it
        mQueue = std::move(inQueue);
        S_currentQueueP = mQueue.get();
    }

private:
    boost::intrusive_ptr<MessageQueue> mQueue;
};

MessageQueue::MessageQueue() : mState(std::make_unique<State>()) {}

MessageQueue::~MessageQueue() = default;

boost::intrusive_ptr<MessageQueue> MessageQueue::OfCurrentThread() {
    std::uint32_t const forkCount = ForkCount();
    if (S_currentQueueP != nullptr && S_forkCount == forkCount) {
        return const_cast<MessageQueue*>(S_currentQueueP);
    }
    boost::intrusive_ptr<MessageQueue> queue(new MessageQueue);
    if (queue->Descriptor() < 0) {
        return nullptr;
    }
    if (S_threadHasEnded) {
        queue->mState->inbox.Close();
        return queue;
    }
    thread_local OfThread ofThread;
    ofThread.Keep(queue);
    S_forkCount = forkCount;
    return queue;
}

bool MessageQueue::IsOfCurrentThread() const noexcept {
    return S_currentQueueP == this;
}

int MessageQueue::Descriptor() const noexcept {
    return mState->inbox.Descriptor();
}

void MessageQueue::PostQuit() noexcept {
    // Relaxed: the flag publishes nothing; it only lets the first call through.
    if (!mState->isQuitPosted.exchange(true, std::memory_order_relaxed)) {
        static_cast<void>(mState->Push(mState->quit)); // refused if the thread has ended
    }
}

bool MessageQueue::HandleMessage() noexcept {
    MessageInbox<utility::NoPause>& inbox = mState->inbox;
    while (!mState->hasQuit) {
        if (inbox.HasNext()) {
            mState->HandleNext();
            return true;
        }
        inbox.Settle();
        inbox.Await();
    }
    return false;
}

bool MessageQueue::DispatchMessages() noexcept {
    MessageInbox<utility::NoPause>& inbox = mState->inbox;
    std::uint64_t const until = mState->wakeUp.Gather(inbox);
    while (inbox.Popped() < until && !mState->hasQuit) {
        if (inbox.Popped() + 1 < until) {
            mState->wakeUp.Call(); // for a loop that the handler may run: others are left to it
        }
        mState->HandleNext();
    }
    if (mState->hasQuit) {
        inbox.Silence(); // a loop that goes on all the same must not spin
        return false;
    }
    inbox.Settle();
    return true;
}

void MessageQueue::RemindOfQuit() noexcept {
    mState->inbox.Signal();
    mState->wakeUp.Call();
}

bool MessageQueue::SetWakeUp(boost::intrusive_ptr<WakeUpFunction> inFunction) noexcept {
    return mState->wakeUp.Set(std::move(inFunction));
}

void MessageQueue::ClearWakeUp() noexcept {
    mState->wakeUp.Clear();
}

WakeUpFunction::~WakeUpFunction() = default;

Message::Message(boost::intrusive_ptr<MessageTarget> inTarget) noexcept
    : mTarget(std::move(inTarget)) {}

Message::~Message() = default;

MessageTarget::MessageTarget(boost::intrusive_ptr<MessageQueue> inQueue) noexcept
    : mQueue(std::move(inQueue)) {}

MessageTarget::~MessageTarget() = default;

void MessageTarget::Close() noexcept {
    // Relaxed: the flag guards no data. What messages refer to has locks of its own.
    mIsClosed.store(true, std::memory_order_relaxed);
}

bool MessageTarget::IsClosed() const noexcept {
    return mIsClosed.load(std::memory_order_relaxed);
}

bool MessageTarget::IsAccepting() const noexcept {
    return !IsClosed() && !mQueue->mState->inbox.IsClosed();
}

bool MessageTarget::Send(boost::intrusive_ptr<Message> inMessage) noexcept {
    return !IsClosed() && mQueue->mState->Push(std::move(inMessage));
}

} // namespace brindle::platform
