#include <brindle/threads/EventLoopWakeUp.h>

#include "platform/Fork.h"
#include "threads/src/executors/CurrentMessageQueue.h"
#include "threads/src/executors/DropException.h"

#include <stdexcept>
#include <utility>

namespace brindle::threads {

namespace {

class ClientsFunction : public platform::WakeUpFunction {
public:
    explicit ClientsFunction(boost::function<void()> inFunction)
        : mFunction(std::move(inFunction)) {}

    bool Call() noexcept override {
        try {
            mFunction();
            return true;
        } catch (...) {
            DropException("");
            return false;
        }
    }

private:
    boost::function<void()> const mFunction;
};

} // namespace

struct EventLoopWakeUp::State {
    // In a forked child, other threads may have been in the function, so nothing is released there.
    std::uint32_t const forkCount = platform::ForkCount();
    boost::intrusive_ptr<platform::MessageQueue> const queue = CurrentMessageQueue();
};

EventLoopWakeUp::EventLoopWakeUp(boost::function<void()> inFunction)
    : mState(std::make_unique<State>()) {
    if (inFunction.empty()) {
        throw boost::bad_function_call();
    }
    if (!mState->queue->SetWakeUp(new ClientsFunction(std::move(inFunction)))) {
        throw std::logic_error("this thread's loop has a wake-up already");
    }
}

EventLoopWakeUp::~EventLoopWakeUp() {
    if (platform::ForkCount() == mState->forkCount) {
        mState->queue->ClearWakeUp();
    } else {
        static_cast<void>(mState.release());
    }
}

} // namespace brindle::threads
