#pragma once

#include <brindle/Export.h>

#include <boost/thread/recursive_mutex.hpp>

#include <memory>
#include <string>

namespace brindle::threads {

template <typename Mutex, typename BoostMutex>
class ScopedLock;

/// A mutex that its owner may lock several times; locked through a `RecursiveMutexLock`.
///
/// That the system has no more mutexes is reported through `config::ThrowError`, and is a
/// `boost::thread_resource_error` if the report returns.
class BRN_API RecursiveMutex {
public:
    RecursiveMutex();
    /// The name says to the reader what the mutex is for; it leaves no trace.
    explicit RecursiveMutex(std::string const& inName);
    /// Take the mutex of the source, which may only be destroyed or assigned to from then on.
    /// Neither may be locked meanwhile.
    RecursiveMutex(RecursiveMutex& ioSource);
    RecursiveMutex& operator=(RecursiveMutex& ioSource);
    virtual ~RecursiveMutex();

protected:
    boost::recursive_mutex* GetMutex() { return mMutex.get(); }

private:
    template <typename Mutex, typename BoostMutex>
    friend class ScopedLock;

    std::unique_ptr<boost::recursive_mutex> mMutex;
};

} // namespace brindle::threads
