#include "threads/src/executors/EventLoopAdaptor.h"

#include "threads/src/executors/CurrentMessageQueue.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <utility>

namespace brindle::threads {

boost::shared_ptr<AsyncEventLoopAdaptor> AdaptCurrentEventLoopAsExecutor() {
    return boost::make_shared<EventLoopAdaptor>();
}

EventLoopAdaptor::EventLoopAdaptor() : mTarget(new EventLoopTarget(CurrentMessageQueue())) {}

EventLoopAdaptor::~EventLoopAdaptor() {
    mTarget->Close();
}

bool EventLoopAdaptor::Post(boost::function0<void> const& inFunction,
                            std::uint32_t inDelayMilliseconds) {
    AllocatedFunction::Pointer item = AllocatedFunction::Make(inFunction);
    return PostItem(item, inDelayMilliseconds);
}

bool EventLoopAdaptor::PostItem(AllocatedFunction::Pointer& ioItem,
                                std::uint32_t inDelayMilliseconds) {
    return inDelayMilliseconds == 0 ? PostImmediate(ioItem)
                                    : PostDelayed(ioItem, inDelayMilliseconds);
}

bool EventLoopAdaptor::PostImmediate(AllocatedFunction::Pointer& ioItem) {
    auto const pump = mTarget->MakePump();
    if (mTarget->IsOfCurrentThread()) {
        // The pump is not handled before this function returns, so it can be sent first: if that
        // fails, there is no item to take back.
        return mPoster.Post(pump, 0) && mTarget->immediate.Post(ioItem);
    }
    return mTarget->immediate.Post(ioItem) && mPoster.Post(pump, 0);
}

bool EventLoopAdaptor::PostDelayed(AllocatedFunction::Pointer& ioItem,
                                   std::uint32_t inDelayMilliseconds) {
    auto const message = mTarget->MakeDelayed(ioItem);
    try {
        if (mPoster.Post(message, inDelayMilliseconds)) {
            return true;
        }
    } catch (...) {
        ioItem = mTarget->delayed.Take(message.get());
        throw;
    }
    ioItem = mTarget->delayed.Take(message.get());
    return false;
}

bool EventLoopAdaptor::IsCurrentThreadExecutorThread() {
    return mTarget->IsOfCurrentThread();
}

void EventLoopAdaptor::Drain() {
    auto const target = mTarget; // an item may destroy the adaptor
    while (target->DispatchOne()) {
    }
}

} // namespace brindle::threads
