#include "threads/src/threads/CurrentThreadPriority.h"

#include "platform/Threads.h"

namespace brindle::threads {

std::int32_t PlatformPriority(ThreadPriority inPriority) {
    switch (inPriority) {
    case kThreadPriorityIdle:
        return -15;
    case kThreadPriorityLowest:
        return -2;
    case kThreadPriorityBelowNormal:
        return -1;
    case kThreadPriorityNormal:
        return 0;
    case kThreadPriorityAboveNormal:
        return 1;
    case kThreadPriorityHighest:
        return 2;
    }
    return 0;
}

void SetCurrentThreadPriority(ThreadPriority inPriority) {
    platform::SetThreadPriority(PlatformPriority(inPriority));
}

} // namespace brindle::threads
