#pragma once

#include "threads/src/executors/CurrentMessageQueue.h"

#include <boost/noncopyable.hpp>

namespace brindle::threads {

/// The loop of the thread that constructs it.
class MessageLoop : boost::noncopyable {
public:
    /// Throws as `CurrentMessageQueue`.
    MessageLoop() : mQueue(CurrentMessageQueue()) {}

    /// Handles messages until `Quit`. Only the thread of the loop may call it.
    void Run() {
        while (mQueue->HandleMessage()) {
        }
    }

    /// Called in the thread of the loop after `Run`, before a function that may run a nested loop:
    /// lets that find out.
    void RemindOfQuit() { mQueue->RemindOfQuit(); }

    /// Ends `Run` after the messages that wait already. Any thread may call it.
    void Quit() { mQueue->PostQuit(); }

private:
    boost::intrusive_ptr<platform::MessageQueue> const mQueue;
};

} // namespace brindle::threads
