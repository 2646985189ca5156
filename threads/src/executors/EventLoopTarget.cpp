#include "threads/src/executors/EventLoopTarget.h"

#include "threads/src/executors/DropException.h"

#include <cstddef>
#include <new>
#include <utility>

namespace brindle::threads {

namespace {

/// Runs items of the target on the loop, which goes on whatever they throw.
template <typename Function>
void RunDroppingExceptions(EventLoopTarget& ioTarget, Function const& inFunction) noexcept {
    try {
        inFunction(ioTarget);
    } catch (...) {
        DropException(ioTarget.ExecutorName());
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
        RunDroppingExceptions(Adaptor(), [](EventLoopTarget& ioTarget) { ioTarget.DispatchOne(); });
    }
};

/// Does not release its item with itself: it may be released by the shared timer's thread, which
/// runs no client's destructor.
class DelayedMessage : public EventLoopMessage {
public:
    DelayedMessage(boost::intrusive_ptr<EventLoopTarget> inTarget, DelayedItems::Number inNumber)
        : EventLoopMessage(std::move(inTarget)), mNumber(inNumber) {}

    void Handle() noexcept override {
        RunDroppingExceptions(
            Adaptor(), [this](EventLoopTarget& ioTarget) { Run(ioTarget.delayed.Take(mNumber)); });
    }

private:
    DelayedItems::Number const mNumber;
};

} // namespace

bool EventLoopTarget::DispatchOne() {
    return Run(immediate.Take());
}

void EventLoopTarget::Close() noexcept {
    immediate.Clear();
    delayed.Clear();
    platform::MessageTarget::Close();
}

boost::intrusive_ptr<platform::Message> EventLoopTarget::MakePump() {
    return new PumpMessage(this);
}

boost::intrusive_ptr<platform::Message>
EventLoopTarget::MakeDelayed(DelayedItems::Number inNumber) {
    return new DelayedMessage(this, inNumber);
}

} // namespace brindle::threads
