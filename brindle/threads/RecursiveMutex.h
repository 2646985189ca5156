#pragma once

#include <brindle/Export.h>

#include <memory>
#include <string>

namespace boost {
class recursive_mutex;
}

namespace brindle::threads {

template <typename Mutex, typename BoostMutex>
class ScopedLock;

/// A mutex that its owner may lock several times. It is locked through a `RecursiveMutexLock`:
///
///     RecursiveMutexLock const lock(mMutex, true);
///
/// A lack of resources is reported through `config::ThrowError`, and throws
/// `boost::thread_resource_error` if the report returns.
///
/// Beside the standard library: a `std::recursive_mutex` that is locked through
/// `RecursiveMutexLock` alone, so that it is always unlocked again.
class BRN_API RecursiveMutex {
public:
    RecursiveMutex();
    /// The name is for the reader of the code, and is not kept.
    explicit RecursiveMutex(std::string const& inName);
    /// These take the source's mutex. From then on the source may only be destroyed or assigned to.
    /// Neither may be locked meanwhile.
    RecursiveMutex(RecursiveMutex& ioSource);
    RecursiveMutex& operator=(RecursiveMutex& ioSource);
    virtual ~RecursiveMutex();

protected:
    /// The mutex of Boost, which this object owns, for derived classes.
    boost::recursive_mutex* GetMutex() { return mMutex.get(); }

private:
    template <typename Mutex, typename BoostMutex>
    friend class ScopedLock;

    std::unique_ptr<boost::recursive_mutex> mMutex;
};

} // namespace brindle::threads
