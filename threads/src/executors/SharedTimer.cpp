#include "threads/src/executors/SharedTimer.h"

#include <boost/smart_ptr/weak_ptr.hpp>
#include <boost/thread/mutex.hpp>

namespace brindle::threads {

boost::shared_ptr<AsyncThreadedExecutor> SharedTimer() {
    struct Shared {
        boost::mutex mutex;
        boost::weak_ptr<AsyncThreadedExecutor> timer;
    };
    static auto* const shared = new Shared; // never destroyed: loops may end after the statics
    boost::mutex::scoped_lock const lock(shared->mutex);
    boost::shared_ptr<AsyncThreadedExecutor> timer = shared->timer.lock();
    if (timer == nullptr) {
        timer = CreateAsyncThreadedExecutor("SharedTimerThread", 1, kThreadPriorityNormal);
        shared->timer = timer;
    }
    return timer;
}

} // namespace brindle::threads
