#pragma once

#include <brindle/utility/RefCountedObject.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <atomic>
#include <memory>

namespace brindle::platform {

class MessageWindow;

template <typename Steps>
class MessageInbox;

/// The messages to the windows of one thread, in the order of their arrival. The queue outlives its
/// thread as long as somebody holds it, but takes nothing any more.
class MessageQueue : public utility::RefCountedObject {
public:
    /// The queue of the calling thread, which gets one with the first call. Null if the system has
    /// no descriptor for it; `std::bad_alloc`. When the thread ends, what still waits is released
    /// unhandled.
    static boost::intrusive_ptr<MessageQueue> OfCurrentThread();
    ~MessageQueue() override;

    // Any thread.

    bool IsOfCurrentThread() const noexcept;
    /// Is readable as long as messages wait, and may be readable once after the last of them. For
    /// watching alone; it lasts as long as the queue.
    int Descriptor() const noexcept;
    /// Ends the loop of the thread after what waits already. Only the first call counts.
    void PostQuit() noexcept;

    // The queue's own thread.

    /// Handles the oldest message; blocks until there is one. False, and nothing is handled, when
    /// the thread has been told to quit.
    bool HandleMessage() noexcept;
    /// Handles the messages that wait when it is called, and does not block. A message that is
    /// handled may call it in turn.
    void DispatchMessages() noexcept;

private:
    friend class MessageWindow;
    struct State;
    class OfThread;

    MessageQueue();

    std::unique_ptr<State> mState;
};

/// What may be sent to a window, once. It belongs to those who hold it, on any thread.
class Message : public utility::RefCountedObject {
public:
    /// Without a window it is for the thread itself.
    explicit Message(boost::intrusive_ptr<MessageWindow> inWindow) noexcept;
    ~Message() override;

    /// Called at most once, on the thread of the window.
    virtual void Handle() noexcept = 0;

    MessageWindow* Window() const noexcept { return mWindow.get(); }

private:
    template <typename Steps>
    friend class MessageInbox;

    Message* mNext = nullptr; // while it is in a queue
    boost::intrusive_ptr<MessageWindow> const mWindow;
};

/// A target of messages, which are handled on its thread. Any thread may call any operation; the
/// caller holds a reference meanwhile.
class MessageWindow : public utility::RefCountedObject {
public:
    explicit MessageWindow(boost::intrusive_ptr<MessageQueue> inQueue) noexcept;
    ~MessageWindow() override;

    /// From now on no handling of a message begins: messages are released unhandled.
    void Destroy() noexcept;
    bool IsDestroyed() const noexcept;
    bool IsOfCurrentThread() const noexcept { return mQueue->IsOfCurrentThread(); }

    /// Sends a message of this window: on the window's own thread it is handled inside the call,
    /// from another one it is appended to the queue. Never blocks. False, and it is not handled, if
    /// the window is destroyed or its thread has ended.
    bool SendNotify(boost::intrusive_ptr<Message> inMessage) noexcept;

private:
    boost::intrusive_ptr<MessageQueue> const mQueue;
    std::atomic<bool> mIsDestroyed{false};
};

} // namespace brindle::platform
