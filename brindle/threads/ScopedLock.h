#pragma once

#include <brindle/Export.h>
#include <brindle/threads/RecursiveMutex.h>

#include <memory>

namespace brindle::threads {

/// Holds a mutex for as long as it lives. One thread may have several of these on one recursive
/// mutex.
///
/// A failure is reported through `config::ThrowError`, and throws `boost::lock_error` or
/// `boost::thread_resource_error` if the report returns.
///
/// Beside the standard library: as `std::unique_lock`, which cannot be unlocked before its end.
template <typename Mutex, typename BoostMutex>
class ScopedLock {
public:
    /// Locks the mutex, and blocks until it can, if `inLockNow`; otherwise the mutex is not locked.
    ScopedLock(Mutex& ioMutex, bool inLockNow);
    ScopedLock(ScopedLock const&) = delete;
    ScopedLock& operator=(ScopedLock const&) = delete;
    virtual ~ScopedLock();

private:
    struct Lock; // a `BoostMutex::scoped_lock`

    std::unique_ptr<Lock> mLock;
};

/// The lock of a `RecursiveMutex`; the thread that holds it may take another one.
using RecursiveMutexLock = ScopedLock<RecursiveMutex, boost::recursive_mutex>;

extern template class BRN_API ScopedLock<RecursiveMutex, boost::recursive_mutex>;

} // namespace brindle::threads
