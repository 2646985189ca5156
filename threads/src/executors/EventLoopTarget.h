#pragma once

#include "platform/MessageLoop.h"
#include "threads/src/executors/AllocatedFunction.h"
#include "threads/src/executors/DelayedItems.h"
#include "threads/src/executors/ThreadSafeQueue.h"

#include <string>
#include <utility>

namespace brindle::threads {

/// Where the messages of an adaptor go, and the owner of its items. Messages and the timer keep the
/// target alive, and only fetch items from it; so an adaptor that is destroyed releases its items
/// at once, wherever their messages are. Any thread may call.
class EventLoopTarget : public platform::MessageTarget {
public:
    /// Of a queue, and for an executor of this name.
    EventLoopTarget(boost::intrusive_ptr<platform::MessageQueue> inQueue, std::string inName)
        : platform::MessageTarget(std::move(inQueue)), mExecutorName(std::move(inName)) {}

    /// Runs the oldest immediate item on the calling thread and releases it. False if there is
    /// none. What the item throws reaches the caller.
    bool DispatchOne();

    /// Releases the items, and takes no more messages.
    void Close() noexcept;

    // These throw `std::bad_alloc`.

    /// A message that calls `DispatchOne` once on the loop's thread.
    [[nodiscard]] boost::intrusive_ptr<platform::Message> MakePump();
    /// A message that runs the delayed item of this number on the loop's thread, if it still exists
    /// then.
    [[nodiscard]] boost::intrusive_ptr<platform::Message>
    MakeDelayed(DelayedItems::Number inNumber);

    ThreadSafeQueue<AllocatedFunction> immediate;
    DelayedItems delayed;

    std::string const& ExecutorName() const noexcept { return mExecutorName; }

private:
    std::string const mExecutorName;
};

} // namespace brindle::threads
