#pragma once

#include <brindle/utility/RefCountedObject.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <atomic>
#include <memory>

namespace brindle::platform {

class MessageTarget;

template <typename Steps>
class MessageInbox;

/// Wakes a loop that watches no descriptor.
class WakeUpFunction : public utility::RefCountedObject {
public:
    ~WakeUpFunction() override;

    /// Has the loop call `DispatchMessages` after this. False if that failed; then the next message
    /// calls it again. Several threads may call it at once.
    [[nodiscard]] virtual bool Call() noexcept = 0;
};

/// The messages to the targets of one thread, in the order of their arrival. The queue may outlive
/// its thread, but takes no messages then.
class MessageQueue : public utility::RefCountedObject {
public:
    /// The queue of the calling thread, made by its first call. Null if the system has no
    /// descriptor for it; throws `std::bad_alloc`. When the thread ends, messages that still wait
    /// are released unhandled.
    [[nodiscard]] static boost::intrusive_ptr<MessageQueue> OfCurrentThread();
    ~MessageQueue() override;

    // Any thread may call these.

    bool IsOfCurrentThread() const noexcept;
    /// Readable as long as messages wait, and possibly once after the last of them. For watching
    /// only. It stays open as long as the queue exists.
    int Descriptor() const noexcept;
    /// Ends the loop of the thread after the messages that wait already. Only the first call has an
    /// effect.
    void PostQuit() noexcept;
    /// Ends what `SetWakeUp` began: waits until the calls of other threads have returned. None
    /// comes later. The function may call it.
    void ClearWakeUp() noexcept;

    // Only the thread of the queue may call these.

    /// Handles the oldest message; blocks until there is one. False, with nothing handled, once the
    /// thread has been told to quit.
    [[nodiscard]] bool HandleMessage() noexcept;
    /// Handles the messages that wait when it is called, and does not block. The handler of a
    /// message may call it. False once the thread has been told to quit; then nothing is handled
    /// any more, and the descriptor is not readable until another message arrives.
    bool DispatchMessages() noexcept;
    /// Has the function called once now, and by threads that send messages, so that a loop which
    /// answers each call by `DispatchMessages` handles every message. Many messages share a call.
    /// False if there is a function already.
    [[nodiscard]] bool SetWakeUp(boost::intrusive_ptr<WakeUpFunction> inFunction) noexcept;
    /// Wakes a loop that has yet to find out that the thread was told to quit.
    void RemindOfQuit() noexcept;

private:
    friend class MessageTarget;
    struct State;
    class OfThread;

    MessageQueue();

    std::unique_ptr<State> mState;
};

/// Something to do on the thread of a target. A message is sent once. Any thread may hold one.
class Message : public utility::RefCountedObject {
public:
    /// Without a target, the message is for the thread itself.
    explicit Message(boost::intrusive_ptr<MessageTarget> inTarget) noexcept;
    ~Message() override;

    /// Called at most once, on the thread of the target.
    virtual void Handle() noexcept = 0;

    MessageTarget* Target() const noexcept { return mTarget.get(); }

private:
    template <typename Steps>
    friend class MessageInbox;

    Message* mNext = nullptr; // in the inbox
    boost::intrusive_ptr<MessageTarget> const mTarget;
};

/// Receives messages on one thread, until it is closed. Any thread may call any operation, as long
/// as it holds a reference.
class MessageTarget : public utility::RefCountedObject {
public:
    explicit MessageTarget(boost::intrusive_ptr<MessageQueue> inQueue) noexcept;
    ~MessageTarget() override;

    /// From now on no message begins to be handled; those that were sent are released unhandled.
    void Close() noexcept;
    bool IsClosed() const noexcept;
    bool IsOfCurrentThread() const noexcept { return mQueue->IsOfCurrentThread(); }

    /// Whether messages are still accepted: the target is not closed, and its thread has not ended.
    bool IsAccepting() const noexcept;

    /// Appends a message that was made for this target to the queue of its thread, which may be the
    /// calling thread, and may call the function of `SetWakeUp`. Never blocks, and never handles
    /// the message. False, and it is not handled at all, if messages are not accepted.
    [[nodiscard]] bool Send(boost::intrusive_ptr<Message> inMessage) noexcept;

private:
    boost::intrusive_ptr<MessageQueue> const mQueue;
    std::atomic<bool> mIsClosed{false};
};

} // namespace brindle::platform
