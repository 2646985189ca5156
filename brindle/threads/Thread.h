#pragma once

#include <brindle/Export.h>

#include <boost/function.hpp>
#include <boost/thread/thread.hpp>
#include <boost/thread/xtime.hpp>

#include <cstdint>
#include <memory>
#include <string>

namespace brindle::threads {

/// The system's id of the calling thread, unique among the threads that run now.
BRN_API std::uint32_t GetCurrentThreadID();

/// A thread with a name. An object belongs to one thread at a time.
///
/// Failures are reported through `config::ThrowError`; if the report returns, a lack of resources
/// is a `boost::thread_resource_error` and a failed lock a `boost::lock_error`.
class BRN_API Thread {
public:
    /// Denotes the calling thread and starts none. It is compared, and not joined.
    explicit Thread(std::string const& inName);
    /// Starts a thread that calls the function, and ends at once if that is empty. An exception
    /// that leaves the function ends the process.
    Thread(std::string const& inName, boost::function0<void> const& inFunction);
    /// Take the thread of the source and a copy of its name. The source may only be destroyed or
    /// assigned to from then on.
    Thread(Thread& ioSource);
    Thread& operator=(Thread& ioSource);
    /// Neither stops the thread nor waits for it.
    virtual ~Thread();

    /// Blocks until the thread has ended; returns at once if it was joined before. A thread that
    /// joins itself gets a `boost::thread_resource_error`, reported first.
    void Join();

    /// Blocks the caller until the system's clock shows this time, in UTC.
    static void Sleep(boost::xtime const& inTime);
    /// Gives up the rest of the time slice.
    static void YieldTime();

    /// Whether both denote the same thread, whatever their names; also when it has ended, and the
    /// system has given its id to another.
    bool operator==(Thread const& inOther) const;
    bool operator!=(Thread const& inOther) const;

protected:
    /// Takes over the thread, which it deletes.
    Thread(std::string const& inName, boost::thread* inThread);

    boost::thread* GetThread() { return mThread.get(); }

private:
    friend class ThreadGroup;
    void Start(boost::function0<void> const& inFunction);

    std::string mName;
    std::shared_ptr<boost::thread> mThread; // a group that has it shares it
    boost::thread::id mID;
    std::uint64_t mNumber = 0; // never used again, as an id may be; 0 is unknown
};

} // namespace brindle::threads
