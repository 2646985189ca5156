#pragma once

#include <cstdint>

namespace brindle::threads {

/// How much a thread matters beside others. What the system grants of it depends on the user's
/// rights.
enum ThreadPriority : std::int32_t {
    kThreadPriorityIdle = 0,
    kThreadPriorityLowest = 1,
    kThreadPriorityBelowNormal = 2,
    kThreadPriorityNormal = 3,
    kThreadPriorityAboveNormal = 4,
    kThreadPriorityHighest = 5
};

} // namespace brindle::threads
