#include "threads/src/executors/EventLoopAdaptor.h"

#include "threads/src/executors/CurrentMessageQueue.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <utility>

namespace brindle::threads {

boost::shared_ptr<AsyncEventLoopAdaptor> AdaptCurrentEventLoopAsExecutor() {
    return boost::make_shared<EventLoopAdaptor>();
}

EventLoopAdaptor::EventLoopAdaptor() : mWindow(new EventLoopWindow(CurrentMessageQueue())) {}

EventLoopAdaptor::~EventLoopAdaptor() {
    mWindow->Close();
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
    auto const pump = mWindow->MakePump();
    if (mWindow->IsOfCurrentThread()) {
        // The pump is not handled before this returns: it may go first, and if it cannot, nothing
        // has happened.
        return mPoster.Post(pump, 0) && mWindow->immediate.Post(ioItem);
    }
    return mWindow->immediate.Post(ioItem) && mPoster.Post(pump, 0);
}

bool EventLoopAdaptor::PostDelayed(AllocatedFunction::Pointer& ioItem,
                                   std::uint32_t inDelayMilliseconds) {
    auto const message = mWindow->MakeDelayed(ioItem);
    try {
        if (mPoster.Post(message, inDelayMilliseconds)) {
            return true;
        }
    } catch (...) {
        ioItem = mWindow->delayed.Take(message.get());
        throw;
    }
    ioItem = mWindow->delayed.Take(message.get());
    return false;
}

bool EventLoopAdaptor::IsCurrentThreadExecutorThread() {
    return mWindow->IsOfCurrentThread();
}

void EventLoopAdaptor::Drain() {
    auto const window = mWindow; // an item may let go of the adaptor
    while (window->DispatchOne()) {
    }
}

} // namespace brindle::threads
