#include "threads/src/executors/SharedTimer.h"

#include "platform/Fork.h"
#include "platform/Threads.h"
#include "utility/src/base/Mutex.h"

#include <boost/smart_ptr/weak_ptr.hpp>

#include <new>
#include <type_traits>

namespace brindle::threads {

namespace {

struct Shared {
    utility::Mutex mutex;
    boost::weak_ptr<AsyncThreadedExecutor> timer BRN_GUARDED_BY(mutex);
    // The thread that made the timer ran below normal priority. Threads inherit that, and a user
    // may have no right to raise them again.
    bool isHeldBack BRN_GUARDED_BY(mutex) = false;
};

std::aligned_storage_t<sizeof(Shared), alignof(Shared)> S_storage;

/// Never destroyed, because loops may end after static objects are destroyed. Made again in a
/// forked child, where the parent's timer has no thread and the mutex may be held by a thread that
/// does not exist.
Shared& Make() {
    return *new (&S_storage) Shared;
}

Shared& Current() {
    static Shared& shared = Make();
    static bool const isRemade = platform::OnFork(nullptr, nullptr, [] { Make(); });
    static_cast<void>(isRemade);
    return shared;
}

} // namespace

boost::shared_ptr<AsyncThreadedExecutor> SharedTimer() {
    Shared& shared = Current();
    utility::MutexLock const lock(shared.mutex);
    boost::shared_ptr<AsyncThreadedExecutor> timer = shared.timer.lock();
    bool const isBelowNormal = platform::IsThreadBelowNormal();
    if (timer == nullptr || (shared.isHeldBack && !isBelowNormal)) {
        timer = CreateAsyncThreadedExecutor("SharedTimerThread", 1, kThreadPriorityNormal);
        shared.timer = timer;
        shared.isHeldBack = isBelowNormal;
    }
    return timer;
}

} // namespace brindle::threads
