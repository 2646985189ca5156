#include "threads/src/executors/EventLoopExecutor.h"

#include <boost/bind/bind.hpp>
#include <boost/smart_ptr/make_shared.hpp>

namespace brindle::threads {

namespace {

/// Runs the items that are left, also those behind one that throws.
void DrainToTheEnd(EventLoopAdaptor& ioAdaptor) {
    for (bool isDrained = false; !isDrained;) {
        try {
            ioAdaptor.Drain();
            isDrained = true;
        } catch (...) {
        }
    }
}

} // namespace

boost::shared_ptr<AsyncEventLoopExecutor> CreateAsyncEventLoopExecutor(std::string const& inName) {
    return boost::make_shared<EventLoopExecutor>(inName);
}

EventLoopExecutor::EventLoopExecutor(std::string const& inName)
    : mShared(boost::make_shared<Shared>()),
      mThread(inName, boost::bind(&EventLoopExecutor::RunThread, mShared)) {}

EventLoopExecutor::~EventLoopExecutor() {
    Shutdown();
}

void EventLoopExecutor::RunThread(boost::shared_ptr<Shared> const& inShared) {
    boost::shared_ptr<EventLoopAdaptor> adaptor;
    boost::shared_ptr<MessageLoop> loop;
    try {
        loop = boost::make_shared<MessageLoop>();
        adaptor = boost::make_shared<EventLoopAdaptor>();
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
    DrainToTheEnd(*adaptor);
}

boost::shared_ptr<EventLoopAdaptor> EventLoopExecutor::Adaptor() {
    mShared->ready.Wait();
    SharedGuard const share(mShared->lock);
    return mShared->adaptor;
}

bool EventLoopExecutor::Post(boost::function0<void> const& inFunction,
                             std::uint32_t inDelayMilliseconds) {
    // The client's function is copied, and released if need be, outside the lock.
    AllocatedFunction::Pointer item = AllocatedFunction::Make(inFunction);
    mShared->ready.Wait();
    // Held while posting, so that an item that is accepted comes before the quit message.
    SharedGuard const share(mShared->lock);
    return mShared->adaptor != nullptr && mShared->adaptor->PostItem(item, inDelayMilliseconds);
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
    mShared->ready.Wait();
    boost::shared_ptr<EventLoopAdaptor> adaptor;
    boost::shared_ptr<MessageLoop> loop;
    {
        ExclusiveGuard const guard(mShared->lock);
        adaptor.swap(mShared->adaptor);
        loop.swap(mShared->loop);
    }
    if (loop != nullptr) {
        loop->Quit();
    }
}

void EventLoopExecutor::Join() {
    if (mThread == Thread("")) {
        return;
    }
    utility::MutexLock const lock(mJoining);
    mThread.Join();
}

} // namespace brindle::threads
