#include "threads/src/executors/EventLoopAdaptor.h"

#include "threads/src/executors/CurrentMessageQueue.h"

#include <boost/smart_ptr/make_shared.hpp>

#include <utility>

namespace brindle::threads {

boost::shared_ptr<AsyncEventLoopAdaptor> AdaptCurrentEventLoopAsExecutor() {
    return boost::make_shared<EventLoopAdaptor>("");
}

EventLoopAdaptor::EventLoopAdaptor(std::string const& inName)
    : mTarget(new EventLoopTarget(CurrentMessageQueue(), inName)) {}

EventLoopAdaptor::~EventLoopAdaptor() {
    if (IsInherited()) {
        mTarget.detach();
    } else {
        mTarget->Close();
    }
}

bool EventLoopAdaptor::Post(boost::function0<void> const& inFunction,
                            std::uint32_t inDelayMilliseconds) {
    if (IsInherited()) {
        return false;
    }
    AllocatedFunction::Pointer item = AllocatedFunction::Make(inFunction);
    return PostItem(item, inDelayMilliseconds);
}

bool EventLoopAdaptor::PostItem(AllocatedFunction::Pointer& ioItem,
                                std::uint32_t inDelayMilliseconds) {
    return inDelayMilliseconds == 0 ? PostImmediate(ioItem)
                                    : PostDelayed(ioItem, inDelayMilliseconds);
}

bool EventLoopAdaptor::PostImmediate(AllocatedFunction::Pointer& ioItem) {
    auto const pump = mTarget->MakePump(); // first, because it may throw
    return mTarget->immediate.Post(ioItem) && mPoster.Post(pump, 0);
}

bool EventLoopAdaptor::PostDelayed(AllocatedFunction::Pointer& ioItem,
                                   std::uint32_t inDelayMilliseconds) {
    auto const number = mTarget->delayed.Add(ioItem);
    try {
        if (mPoster.Post(mTarget->MakeDelayed(number), inDelayMilliseconds)) {
            return true;
        }
    } catch (...) {
        ioItem = mTarget->delayed.Take(number);
        throw;
    }
    ioItem = mTarget->delayed.Take(number);
    return false;
}

bool EventLoopAdaptor::IsCurrentThreadExecutorThread() {
    return !IsInherited() && mTarget->IsOfCurrentThread();
}

void EventLoopAdaptor::Drain() {
    if (IsInherited()) {
        return;
    }
    auto const target = mTarget; // an item may destroy the adaptor
    while (target->DispatchOne()) {
    }
}

} // namespace brindle::threads
