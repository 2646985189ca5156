#pragma once

#include <brindle/threads/AsyncThreadedExecutor.h>

namespace brindle::threads {

inline boost::shared_ptr<AsyncThreadedExecutor> MakePool(int inThreadCount) {
    return CreateAsyncThreadedExecutor("test", inThreadCount, kThreadPriorityNormal);
}

} // namespace brindle::threads
