#pragma once

#include <brindle/Export.h>
#include <brindle/threads/Thread.h>
#include <brindle/utility/BoostFunction.h>

#include <cstdint>
#include <memory>
#include <string>

namespace brindle::threads {

/// A list of threads that are joined together. Any thread may call the operations, but not while
/// the group is copied from, assigned to or destroyed. Failures are those of `Thread`.
///
/// The group shares the ownership of its threads with their `Thread` objects, so these may be
/// transferred or destroyed before or after it.
///
/// Beside the standard library: as a vector of `std::thread` that are joined one after another.
class BRN_API ThreadGroup {
public:
    /// A group without threads. Threads that the group creates are named after it.
    explicit ThreadGroup(std::string const& inName);
    /// These take the source's threads, and copy its name and count. From then on the source may
    /// only be destroyed or assigned to.
    ThreadGroup(ThreadGroup& ioSource);
    ThreadGroup& operator=(ThreadGroup& ioSource);
    /// Does not wait for the threads, which run on.
    virtual ~ThreadGroup();

    /// Starts a thread that calls the function, named after the group: "NAME created thread #N".
    /// The caller owns the result. After a failure no thread has started, and the group is as
    /// before.
    [[nodiscard]] Thread* CreateThread(boost::function0<void> const& inFunction);

    /// Adding a thread that is in the group, and removing one that is not, have no effect.
    void AddThread(Thread* inThread);
    void RemoveThread(Thread* inThread);

    /// Blocks until each thread has ended, in the order in which they were added. Other operations,
    /// including `Size`, wait until it has returned. No thread of the group may be joined elsewhere
    /// meanwhile. A thread of the group that calls it gets a `boost::thread_resource_error`, which
    /// is reported first.
    void JoinAll();

    /// Threads that have ended count until they are removed.
    std::int32_t Size();

private:
    struct Threads;

    std::string mName;
    std::unique_ptr<Threads> mThreads;
};

} // namespace brindle::threads
