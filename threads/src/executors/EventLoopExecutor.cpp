#include "threads/src/executors/EventLoopExecutor.h"

#include "threads/src/executors/DropException.h"
#include "threads/src/threads/CurrentThreadPriority.h"

#include <boost/bind/bind.hpp>

namespace brindle::threads {

namespace {

/// Runs the items that are left, also those behind one that throws.
void DrainToTheEnd(EventLoopAdaptor& ioAdaptor, MessageLoop& ioLoop) noexcept {
    for (bool isLeft = true; isLeft;) {
        ioLoop.RemindOfQuit();
        try {
            isLeft = ioAdaptor.DrainOne();
        } catch (...) {
            DropException(ioAdaptor.Name());
        }
    }
}

} // namespace

boost::shared_ptr<AsyncEventLoopExecutor> CreateAsyncEventLoopExecutor(std::string const& inName) {
    return boost::make_shared<EventLoopExecutor>(inName);
}

EventLoopExecutor::State::State(std::string const& inName)
    : thread(inName, boost::bind(&EventLoopExecutor::RunThread, shared, inName)) {}

EventLoopExecutor::EventLoopExecutor(std::string const& inName)
    : mState(std::make_unique<State>(inName)) {}

EventLoopExecutor::~EventLoopExecutor() {
    if (IsInherited()) {
        static_cast<void>(mState.release());
        return;
    }
    Shutdown();
}

void EventLoopExecutor::RunThread(boost::shared_ptr<Shared> const& inShared,
                                  std::string const& inName) {
    boost::shared_ptr<EventLoopAdaptor> adaptor;
    boost::shared_ptr<MessageLoop> loop;
    SetCurrentThreadPriority(kThreadPriorityNormal); // not that of the thread that started this one
    try {
        loop = boost::make_shared<MessageLoop>();
        adaptor = boost::make_shared<EventLoopAdaptor>(inName);
    } catch (...) {
        // It has been reported. Without an adaptor the executor is as after a shutdown.
        inShared->ready.Open();
        return;
    }
    {
        ExclusiveGuard const guard(inShared->lock);
        inShared->adaptor = adaptor;
        inShared->loop = loop;
    }
    inShared->ready.Open();
    loop->Run();
    DrainToTheEnd(*adaptor, *loop);
}

boost::shared_ptr<EventLoopAdaptor> EventLoopExecutor::Adaptor() {
    if (IsInherited()) {
        return nullptr;
    }
    mState->shared->ready.Wait();
    SharedGuard const share(mState->shared->lock);
    return mState->shared->adaptor;
}

bool EventLoopExecutor::Post(boost::function0<void> const& inFunction,
                             std::uint32_t inDelayMilliseconds) {
    if (IsInherited()) {
        return false;
    }
    // The client's function is copied, and released if need be, outside the lock.
    AllocatedFunction::Pointer item = AllocatedFunction::Make(inFunction);
    mState->shared->ready.Wait();
    // Held while posting, so that an item that is accepted comes before the quit message.
    SharedGuard const share(mState->shared->lock);
    return mState->shared->adaptor != nullptr &&
           mState->shared->adaptor->PostItem(item, inDelayMilliseconds);
}

bool EventLoopExecutor::IsCurrentThreadExecutorThread() {
    auto const adaptor = Adaptor();
    return adaptor != nullptr && adaptor->IsCurrentThreadExecutorThread();
}

void EventLoopExecutor::Drain() {
    // Runs without the lock, because an item may call `Shutdown`.
    if (auto const adaptor = Adaptor()) {
        adaptor->Drain();
    }
}

bool EventLoopExecutor::IsShutdown() {
    return Adaptor() == nullptr;
}

void EventLoopExecutor::Shutdown() {
    if (IsInherited()) {
        return;
    }
    mState->shared->ready.Wait();
    boost::shared_ptr<EventLoopAdaptor> adaptor;
    boost::shared_ptr<MessageLoop> loop;
    {
        ExclusiveGuard const guard(mState->shared->lock);
        adaptor.swap(mState->shared->adaptor);
        loop.swap(mState->shared->loop);
    }
    if (loop != nullptr) {
        loop->Quit();
    }
}

void EventLoopExecutor::Join() {
    if (IsInherited() || mState->thread == Thread("")) {
        return;
    }
    utility::MutexLock const lock(mState->joining);
    mState->thread.Join();
}

} // namespace brindle::threads
