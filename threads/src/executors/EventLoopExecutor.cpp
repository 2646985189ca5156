#include "threads/src/executors/EventLoopExecutor.h"

#include <boost/bind/bind.hpp>
#include <boost/smart_ptr/make_shared.hpp>

namespace brindle::threads {

namespace {

/// Runs what is left for an adaptor; an exception of an item does not keep back the others.
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
        // Nobody is there to hear of it beyond the report; without an adaptor, it is a shutdown.
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

boost::shared_ptr<EventLoopAdaptor> EventLoopExecutor::Adaptor(SharedGuard& ioHeld) {
    if (mShared->adaptor == nullptr) {
        ioHeld.Unlock();
        mShared->ready.Wait();
        ioHeld.Lock();
    }
    return mShared->adaptor;
}

bool EventLoopExecutor::Post(boost::function0<void> const& inFunction,
                             std::uint32_t inDelayMilliseconds) {
    // A client's function is copied, and released if need be, outside the lock.
    AllocatedFunction::Pointer item = AllocatedFunction::Make(inFunction);
    // Held to the end, so that what is accepted comes before the quit.
    SharedGuard held(mShared->lock);
    auto const adaptor = Adaptor(held);
    return adaptor != nullptr && adaptor->PostItem(item, inDelayMilliseconds);
}

bool EventLoopExecutor::IsCurrentThreadExecutorThread() {
    SharedGuard held(mShared->lock);
    auto const adaptor = Adaptor(held);
    return adaptor != nullptr && adaptor->IsCurrentThreadExecutorThread();
}

void EventLoopExecutor::Drain() {
    SharedGuard held(mShared->lock);
    auto const adaptor = Adaptor(held);
    held.Unlock(); // an item may call `Shutdown`
    if (adaptor != nullptr) {
        adaptor->Drain();
    }
}

bool EventLoopExecutor::IsShutdown() {
    SharedGuard held(mShared->lock);
    return Adaptor(held) == nullptr;
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
    boost::mutex::scoped_lock const lock(mJoining);
    mThread.Join();
}

} // namespace brindle::threads
