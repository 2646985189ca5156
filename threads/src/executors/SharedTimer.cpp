#include "threads/src/executors/SharedTimer.h"

#include "utility/src/base/Mutex.h"

#include <boost/smart_ptr/weak_ptr.hpp>

namespace brindle::threads {

boost::shared_ptr<AsyncThreadedExecutor> SharedTimer() {
    struct Shared {
        utility::Mutex mutex;
        boost::weak_ptr<AsyncThreadedExecutor> timer BRN_GUARDED_BY(mutex);
    };
    static auto* const shared =
        new Shared; // never destroyed: loops may end after static objects are destroyed
    utility::MutexLock const lock(shared->mutex);
    boost::shared_ptr<AsyncThreadedExecutor> timer = shared->timer.lock();
    if (timer == nullptr) {
        timer = CreateAsyncThreadedExecutor("SharedTimerThread", 1, kThreadPriorityNormal);
        shared->timer = timer;
    }
    return timer;
}

} // namespace brindle::threads
