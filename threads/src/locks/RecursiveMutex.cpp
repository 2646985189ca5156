#include <brindle/threads/RecursiveMutex.h>

#include <brindle/threads/ScopedLock.h>

#include "threads/src/locks/ThreadErrors.h"

#include <boost/thread/lock_types.hpp>
#include <boost/thread/recursive_mutex.hpp>

#include <utility>

namespace brindle::threads {

RecursiveMutex::RecursiveMutex()
    : mMutex(ReportingThreadErrors([] { return std::make_unique<boost::recursive_mutex>(); })) {}

RecursiveMutex::RecursiveMutex(std::string const&) : RecursiveMutex() {}

RecursiveMutex::RecursiveMutex(RecursiveMutex& ioSource) : mMutex(std::move(ioSource.mMutex)) {}

RecursiveMutex& RecursiveMutex::operator=(RecursiveMutex& ioSource) {
    mMutex = std::move(ioSource.mMutex);
    return *this;
}

RecursiveMutex::~RecursiveMutex() = default;

template <typename Mutex, typename BoostMutex>
struct ScopedLock<Mutex, BoostMutex>::Lock : BoostMutex::scoped_lock {
    using BoostMutex::scoped_lock::scoped_lock;
};

template <typename Mutex, typename BoostMutex>
ScopedLock<Mutex, BoostMutex>::ScopedLock(Mutex& ioMutex, bool inLockNow)
    : mLock(ReportingThreadErrors([&] {
          return inLockNow ? std::make_unique<Lock>(*ioMutex.GetMutex())
                           : std::make_unique<Lock>(*ioMutex.GetMutex(), boost::defer_lock);
      })) {}

template <typename Mutex, typename BoostMutex>
ScopedLock<Mutex, BoostMutex>::~ScopedLock() = default;

template class ScopedLock<RecursiveMutex, boost::recursive_mutex>;

} // namespace brindle::threads
