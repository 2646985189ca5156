#pragma once

#include <brindle/Export.h>
#include <brindle/threads/Thread.h>

#include <boost/function.hpp>

#include <cstdint>
#include <memory>
#include <string>

namespace brindle::threads {

/// A list of threads that are joined together. Any thread may call the operations, but not while
/// the group is copied from, assigned to or destroyed; failures are those of `Thread`.
class BRN_API ThreadGroup {
public:
    explicit ThreadGroup(std::string const& inName);
    /// Take the threads of the source and copies of its name and count. The source may only be
    /// destroyed or assigned to from then on.
    ThreadGroup(ThreadGroup& ioSource);
    ThreadGroup& operator=(ThreadGroup& ioSource);
    /// Lets go of the threads, which run on, and does not wait for them.
    virtual ~ThreadGroup();

    /// Starts a thread that calls the function, named after the group: "NAME created thread #N".
    /// The caller owns the result, and may delete it before or after the group. If it fails, no
    /// thread has started and the group is as before.
    Thread* CreateThread(boost::function0<void> const& inFunction);

    /// A thread that the group has is not added again; one that it does not have is not removed.
    /// The group has the thread, not the object: that may be transferred or deleted.
    void AddThread(Thread* inThread);
    void RemoveThread(Thread* inThread);

    /// Blocks until each thread has ended, in the order of adding. Every other call, `Size` too,
    /// waits until this has returned, and no thread of the group is joined elsewhere meanwhile. A
    /// thread of the group that calls it gets a `boost::thread_resource_error`, reported first.
    void JoinAll();

    /// Counts threads that have ended, too, until they are removed.
    std::int32_t Size();

private:
    struct Threads;

    std::string mName;
    std::unique_ptr<Threads> mThreads;
};

} // namespace brindle::threads
