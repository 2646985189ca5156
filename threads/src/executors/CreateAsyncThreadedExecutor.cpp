#include <brindle/threads/AsyncThreadedExecutor.h>

#include "platform/Threads.h"
#include "threads/src/executors/ThreadedWorkQueue.h"

#include <boost/smart_ptr/make_shared.hpp>

namespace brindle::threads {

boost::shared_ptr<AsyncThreadedExecutor> CreateAsyncThreadedExecutor(std::string const& inName,
                                                                     int inThreadCount,
                                                                     ThreadPriority inPriority) {
    int const count =
        inThreadCount == -1 ? static_cast<int>(platform::ProcessorCount()) : inThreadCount;
    return boost::make_shared<ThreadedWorkQueue>(inName, count, inPriority);
}

} // namespace brindle::threads
