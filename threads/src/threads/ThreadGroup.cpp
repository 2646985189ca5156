#include <brindle/threads/ThreadGroup.h>

#include "threads/src/locks/ThreadErrors.h"
#include "utility/src/base/Mutex.h"

#include <boost/thread/thread.hpp>

#include <algorithm>
#include <list>
#include <utility>

namespace brindle::threads {

/// The group owns each of its threads together with the `Thread` object, so that either may be
/// destroyed first.
struct ThreadGroup::Threads {
    utility::Mutex mutex;
    std::list<std::shared_ptr<boost::thread>> shares BRN_GUARDED_BY(mutex);
    std::int32_t createdCount BRN_GUARDED_BY(mutex) = 0;
};

ThreadGroup::ThreadGroup(std::string const& inName)
    : mName(inName), mThreads(ReportingThreadErrors([] { return std::make_unique<Threads>(); })) {}

ThreadGroup::ThreadGroup(ThreadGroup& ioSource)
    : mName(ioSource.mName), mThreads(std::move(ioSource.mThreads)) {}

ThreadGroup& ThreadGroup::operator=(ThreadGroup& ioSource) {
    mName = ioSource.mName;
    mThreads = std::move(ioSource.mThreads);
    return *this;
}

ThreadGroup::~ThreadGroup() = default;

Thread* ThreadGroup::CreateThread(boost::function0<void> const& inFunction) {
    return ReportingThreadErrors([&] {
        utility::MutexLock const lock(mThreads->mutex);
        auto const number = std::to_string(mThreads->createdCount + 1);
        auto thread = std::make_unique<Thread>(mName + " created thread #" + number);
        std::list<std::shared_ptr<boost::thread>> share(1, thread->mThread);
        // The thread starts last, so that a failure leaves nothing behind.
        thread->Start(inFunction);
        mThreads->shares.splice(mThreads->shares.end(), share);
        ++mThreads->createdCount;
        return thread.release();
    });
}

void ThreadGroup::AddThread(Thread* inThread) {
    ReportingThreadErrors([&] {
        utility::MutexLock const lock(mThreads->mutex);
        auto& shares = mThreads->shares;
        if (std::find(shares.begin(), shares.end(), inThread->mThread) == shares.end()) {
            shares.push_back(inThread->mThread);
        }
    });
}

void ThreadGroup::RemoveThread(Thread* inThread) {
    ReportingThreadErrors([&] {
        utility::MutexLock const lock(mThreads->mutex);
        mThreads->shares.remove(inThread->mThread);
    });
}

void ThreadGroup::JoinAll() {
    ReportingThreadErrors([&] {
        utility::MutexLock const lock(mThreads->mutex);
        for (auto const& thread : mThreads->shares) {
            thread->join();
        }
    });
}

std::int32_t ThreadGroup::Size() {
    return ReportingThreadErrors([&] {
        utility::MutexLock const lock(mThreads->mutex);
        return static_cast<std::int32_t>(mThreads->shares.size());
    });
}

} // namespace brindle::threads
