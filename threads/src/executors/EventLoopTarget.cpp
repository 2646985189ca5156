#include "threads/src/executors/EventLoopTarget.h"

#include <cstddef>
#include <new>
#include <utility>

namespace brindle::threads {

namespace {

/// Runs items on the loop, which goes on whatever they throw.
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

    EventLoopTarget& Adaptor() const noexcept { return static_cast<EventLoopTarget&>(*Target()); }
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
        RunDroppingExceptions([this] { Adaptor().DispatchOne(); });
    }
};

class DelayedMessage : public EventLoopMessage {
public:
    DelayedMessage(boost::intrusive_ptr<EventLoopTarget> inTarget,
                   AllocatedFunction::Pointer& ioItem)
        : EventLoopMessage(std::move(inTarget)) {
        Adaptor().delayed.Add(this, ioItem);
    }
    ~DelayedMessage() override {
        AllocatedFunction::Pointer const released = Adaptor().delayed.Take(this);
    }

    void Handle() noexcept override {
        RunDroppingExceptions([this] { Run(Adaptor().delayed.Take(this)); });
    }
};

} // namespace

bool EventLoopTarget::DispatchOne() {
    return Run(immediate.Take());
}

void EventLoopTarget::Close() noexcept {
    immediate.Clear();
    delayed.Clear();
    // Closed last: the timer releases messages that it cannot send, and should find no item then.
    platform::MessageTarget::Close();
}

boost::intrusive_ptr<platform::Message> EventLoopTarget::MakePump() {
    return new PumpMessage(this);
}

boost::intrusive_ptr<platform::Message>
EventLoopTarget::MakeDelayed(AllocatedFunction::Pointer& ioItem) {
    return new DelayedMessage(this, ioItem);
}

} // namespace brindle::threads
