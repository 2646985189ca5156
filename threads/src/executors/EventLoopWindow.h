#pragma once

#include "platform/MessageLoop.h"
#include "threads/src/executors/AllocatedFunction.h"
#include "threads/src/executors/DelayedItems.h"
#include "threads/src/executors/ThreadSafeQueue.h"

namespace brindle::threads {

/// The hidden window of an adaptor, with the items that wait for its loop. The messages and the
/// timer hold on to it, and the items are its own: when the adaptor goes, it releases them, on
/// whatever path they are. Any thread may call.
class EventLoopWindow : public platform::MessageWindow {
public:
    using platform::MessageWindow::MessageWindow;

    /// Runs the oldest immediate item on the calling thread and releases it. False if there is
    /// none. What the item throws reaches the caller.
    bool DispatchOne();

    /// Releases the items, and takes no more messages.
    void Close() noexcept;

    // These throw `std::bad_alloc`, and then take nothing.

    /// Has `DispatchOne` called once on the window's thread. In a small block of its own.
    boost::intrusive_ptr<platform::Message> MakePump();
    /// Takes the item, and runs it on the window's thread. It is released with the window or with
    /// the message, whichever goes first.
    boost::intrusive_ptr<platform::Message> MakeDelayed(AllocatedFunction::Pointer& ioItem);

    ThreadSafeQueue<AllocatedFunction> immediate;
    DelayedItems delayed;
};

} // namespace brindle::threads
