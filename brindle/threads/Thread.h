#pragma once

#include <brindle/Export.h>
#include <brindle/utility/BoostFunction.h>

#include <cstdint>
#include <memory>
#include <string>

namespace boost {
class thread;
struct xtime;
} // namespace boost

namespace brindle::threads {

/// The system's id of the calling thread, unique among the threads that run now.
BRN_API std::uint32_t GetCurrentThreadID();

/// A thread with a name. An object must not be used by two threads at the same time.
///
///     Thread thread("decoder", [] { Decode(); });
///     thread.Join();
///
/// Failures are reported through `config::ThrowError`; if the report returns, a lack of resources
/// throws `boost::thread_resource_error` and a failed lock `boost::lock_error`.
///
/// Beside the standard library: unlike `std::thread` it has a name, and destroying it while it runs
/// detaches the thread instead of ending the process. It is transferred by a copy from an object
/// that is not constant.
class BRN_API Thread {
public:
    /// Denotes the calling thread, for comparison. No thread is started, and it cannot be joined.
    explicit Thread(std::string const& inName);
    /// Starts a thread that calls the function; with an empty function it ends at once. An
    /// exception that leaves the function ends the process.
    Thread(std::string const& inName, boost::function0<void> const& inFunction);
    /// These take the source's thread, and copy its name. From then on the source may only be
    /// destroyed or assigned to.
    Thread(Thread& ioSource);
    Thread& operator=(Thread& ioSource);
    /// Neither stops the thread nor waits for it.
    virtual ~Thread();

    /// Blocks until the thread has ended; returns at once if it was joined before. A thread that
    /// joins itself gets a `boost::thread_resource_error`, which is reported first. In a forked
    /// child, whose only thread is that which forked, joining a thread of the parent blocks
    /// forever.
    void Join();

    /// Blocks the calling thread until the system's clock shows this time, in UTC. Callers
    /// include <boost/thread/xtime.hpp>.
    static void Sleep(boost::xtime const& inTime);
    /// Gives up the rest of the time slice.
    static void YieldTime();

    /// Whether both denote the same thread, whatever their names. A thread that has ended differs
    /// from one that was given the same id later.
    bool operator==(Thread const& inOther) const;
    /// The opposite.
    bool operator!=(Thread const& inOther) const;

protected:
    /// Takes ownership of the thread. A class that uses this or the next operation includes
    /// <boost/thread/thread.hpp>.
    Thread(std::string const& inName, boost::thread* inThread);

    /// The thread of Boost, which this object owns with the groups that contain it; null if there
    /// is none.
    boost::thread* GetThread() { return mThread.get(); }

private:
    friend class ThreadGroup;
    struct State;

    void Start(boost::function0<void> const& inFunction);

    std::string mName;
    std::shared_ptr<boost::thread> mThread; // shared with the groups that contain it
    State* mState;                          // owned by `mThread`; null after it was taken
    std::uint64_t mNumber = 0;              // unlike an id, never used again; 0 if unknown
};

} // namespace brindle::threads
