#include <brindle/threads/ThreadGroup.h>

#include "threads/src/Guarded.h"

#include <algorithm>
#include <utility>

namespace brindle::threads {

/// Boost's group, and a share in each thread that it lists: a `Thread` has the other.
struct ThreadGroup::Threads {
    Threads() = default;
    Threads(Threads const&) = delete;
    Threads& operator=(Threads const&) = delete;

    // The group would delete the threads that it lists.
    ~Threads() {
        for (auto const& thread : shares) {
            group.remove_thread(thread.get());
        }
    }

    auto Find(boost::thread const* inThread) {
        return std::find_if(shares.begin(), shares.end(),
                            [&](auto const& inShare) { return inShare.get() == inThread; });
    }

    void Add(std::shared_ptr<boost::thread> const& inThread) {
        boost::mutex::scoped_lock const lock(mutex);
        if (Find(inThread.get()) == shares.end()) {
            shares.push_back(inThread);
            group.add_thread(inThread.get());
        }
    }

    void Remove(boost::thread* inThread) {
        boost::mutex::scoped_lock const lock(mutex);
        if (auto const share = Find(inThread); share != shares.end()) {
            group.remove_thread(inThread);
            shares.erase(share);
        }
    }

    boost::mutex mutex; // guards `shares`; taken before the group's own
    boost::thread_group group;
    std::vector<std::shared_ptr<boost::thread>> shares;
};

ThreadGroup::ThreadGroup(std::string const& inName)
    : mName(inName), mThreads(Guarded([] { return std::make_unique<Threads>(); })) {}

ThreadGroup::ThreadGroup(ThreadGroup& ioSource)
    : mCreatedCount(ioSource.mCreatedCount), mName(ioSource.mName),
      mThreads(std::move(ioSource.mThreads)) {}

ThreadGroup& ThreadGroup::operator=(ThreadGroup& ioSource) {
    mCreatedCount = ioSource.mCreatedCount;
    mName = ioSource.mName;
    mThreads = std::move(ioSource.mThreads);
    return *this;
}

ThreadGroup::~ThreadGroup() = default;

Thread* ThreadGroup::CreateThread(boost::function0<void> const& inFunction) {
    // The thread starts last: whatever fails before it leaves nothing behind.
    auto const thread = Guarded([&] {
        auto const started = std::make_shared<boost::thread>([inFunction] {
            if (!inFunction.empty()) {
                inFunction();
            }
        });
        mThreads->Add(started);
        return started;
    });
    ++mCreatedCount;
    return new Thread(mName + " created thread #" + std::to_string(mCreatedCount), thread);
}

void ThreadGroup::AddThread(Thread* inThread) {
    Guarded([&] { mThreads->Add(inThread->mThread); });
}

void ThreadGroup::RemoveThread(Thread* inThread) {
    Guarded([&] { mThreads->Remove(inThread->GetThread()); });
}

void ThreadGroup::JoinAll() {
    Guarded([&] { mThreads->group.join_all(); });
}

std::int32_t ThreadGroup::Size() {
    return Guarded([&] { return static_cast<std::int32_t>(mThreads->group.size()); });
}

} // namespace brindle::threads
