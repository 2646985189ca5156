#pragma once

#include "threads/src/executors/CurrentMessageQueue.h"

#include <boost/noncopyable.hpp>

namespace brindle::threads {

/// The loop of the thread that constructs it.
class MessageLoop : boost::noncopyable {
public:
    /// Throws as `CurrentMessageQueue`.
    MessageLoop() : mQueue(CurrentMessageQueue()) {}

    /// Handles messages until the quit; on the loop's own thread.
    void Run() {
        while (mQueue->HandleMessage()) {
        }
    }

    /// Ends `Run` after the messages that wait already. Any thread.
    void Quit() { mQueue->PostQuit(); }

private:
    boost::intrusive_ptr<platform::MessageQueue> const mQueue;
};

} // namespace brindle::threads
