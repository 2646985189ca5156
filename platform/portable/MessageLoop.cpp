#include "platform/MessageLoop.h"

#include "platform/portable/MessageInbox.h"

#include <utility>

namespace brindle::platform {

namespace {

// Trivial, so that they may be asked in any destructor at the end of a thread.
thread_local MessageQueue const* S_currentQueueP = nullptr;
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
        if (message->Window() == nullptr || !message->Window()->IsDestroyed()) {
            message->Handle();
        }
    }

    MessageInbox<Unpaused> inbox;
    bool hasQuit = false; // the owner's alone
    // Made beforehand, so that a thread can always be told to quit.
    boost::intrusive_ptr<Message> const quit{new QuitMessage(hasQuit)};
    std::atomic<bool> isQuitPosted{false};
};

/// Holds the queue of a thread until the thread ends.
class MessageQueue::OfThread {
public:
    explicit OfThread(boost::intrusive_ptr<MessageQueue> inQueue) noexcept
        : mQueue(std::move(inQueue)) {
        S_currentQueueP = mQueue.get();
    }
    OfThread(OfThread const&) = delete;
    OfThread& operator=(OfThread const&) = delete;
    ~OfThread() {
        S_currentQueueP = nullptr;
        S_threadHasEnded = true;
        mQueue->mState->inbox.Close();
    }

    boost::intrusive_ptr<MessageQueue> const& Queue() const noexcept { return mQueue; }

private:
    boost::intrusive_ptr<MessageQueue> const mQueue;
};

MessageQueue::MessageQueue() : mState(std::make_unique<State>()) {}

MessageQueue::~MessageQueue() = default;

boost::intrusive_ptr<MessageQueue> MessageQueue::OfCurrentThread() {
    if (S_currentQueueP == nullptr) {
        boost::intrusive_ptr<MessageQueue> queue(new MessageQueue);
        if (queue->Descriptor() < 0) {
            return nullptr;
        }
        if (S_threadHasEnded) {
            queue->mState->inbox.Close();
            return queue;
        }
        thread_local OfThread const ofThread(std::move(queue));
        return ofThread.Queue();
    }
    return const_cast<MessageQueue*>(S_currentQueueP);
}

bool MessageQueue::IsOfCurrentThread() const noexcept {
    return S_currentQueueP == this;
}

int MessageQueue::Descriptor() const noexcept {
    return mState->inbox.Descriptor();
}

void MessageQueue::PostQuit() noexcept {
    // Nothing else is told by the flag.
    if (!mState->isQuitPosted.exchange(true, std::memory_order_relaxed)) {
        mState->inbox.Push(mState->quit);
    }
}

bool MessageQueue::HandleMessage() noexcept {
    MessageInbox<Unpaused>& inbox = mState->inbox;
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

void MessageQueue::DispatchMessages() noexcept {
    MessageInbox<Unpaused>& inbox = mState->inbox;
    std::uint64_t const until = inbox.Gather();
    while (inbox.Popped() < until && !mState->hasQuit) {
        mState->HandleNext();
    }
    inbox.Settle();
}

Message::Message(boost::intrusive_ptr<MessageWindow> inWindow) noexcept
    : mWindow(std::move(inWindow)) {}

Message::~Message() = default;

MessageWindow::MessageWindow(boost::intrusive_ptr<MessageQueue> inQueue) noexcept
    : mQueue(std::move(inQueue)) {}

MessageWindow::~MessageWindow() = default;

void MessageWindow::Destroy() noexcept {
    // Guards no data: what the messages lead to has its own locks.
    mIsDestroyed.store(true, std::memory_order_relaxed);
}

bool MessageWindow::IsDestroyed() const noexcept {
    return mIsDestroyed.load(std::memory_order_relaxed);
}

bool MessageWindow::SendNotify(boost::intrusive_ptr<Message> inMessage) noexcept {
    if (IsDestroyed()) {
        return false;
    }
    if (IsOfCurrentThread()) {
        inMessage->Handle();
        return true;
    }
    return mQueue->mState->inbox.Push(std::move(inMessage));
}

} // namespace brindle::platform
