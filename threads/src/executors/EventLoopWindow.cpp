#include "threads/src/executors/EventLoopWindow.h"

#include <cstddef>
#include <new>
#include <utility>

namespace brindle::threads {

namespace {

/// Calls what runs an item; nobody hears of what that throws, and the loop goes on.
template <typename Function>
void RunDroppingExceptions(Function const& inFunction) noexcept {
    try {
        inFunction();
    } catch (...) {
    }
}

bool Run(AllocatedFunction::Pointer const inItem) {
    if (inItem == nullptr) {
        return false;
    }
    if (!inItem->IsEmpty()) {
        inItem->Run();
    }
    return true;
}

class EventLoopMessage : public platform::Message {
protected:
    using platform::Message::Message;

    EventLoopWindow& Target() const noexcept { return static_cast<EventLoopWindow&>(*Window()); }
};

class PumpMessage : public EventLoopMessage {
public:
    using EventLoopMessage::EventLoopMessage;

    static void* operator new(std::size_t inSize) {
        void* const block =
            utility::SmallBlockAllocator::Allocate(static_cast<unsigned int>(inSize));
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        return block;
    }
    static void operator delete(void* inBlock, std::size_t inSize) {
        utility::SmallBlockAllocator::Dispose(inBlock, static_cast<unsigned int>(inSize));
    }

    void Handle() noexcept override {
        RunDroppingExceptions([this] { Target().DispatchOne(); });
    }
};

class DelayedMessage : public EventLoopMessage {
public:
    DelayedMessage(boost::intrusive_ptr<EventLoopWindow> inWindow,
                   AllocatedFunction::Pointer& ioItem)
        : EventLoopMessage(std::move(inWindow)) {
        Target().delayed.Add(this, ioItem);
    }
    ~DelayedMessage() override { Target().delayed.Take(this); }

    void Handle() noexcept override {
        RunDroppingExceptions([this] { Run(Target().delayed.Take(this)); });
    }
};

} // namespace

bool EventLoopWindow::DispatchOne() {
    return Run(immediate.Take());
}

void EventLoopWindow::Close() noexcept {
    immediate.Clear();
    delayed.Clear();
    // Last: the timer releases what it cannot send, and is not to find an item there.
    Destroy();
}

boost::intrusive_ptr<platform::Message> EventLoopWindow::MakePump() {
    return new PumpMessage(this);
}

boost::intrusive_ptr<platform::Message>
EventLoopWindow::MakeDelayed(AllocatedFunction::Pointer& ioItem) {
    return new DelayedMessage(this, ioItem);
}

} // namespace brindle::threads
