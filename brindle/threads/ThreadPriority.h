#pragma once

#include <cstdint>

namespace brindle::threads {

/// How the system prefers a thread to others. Which priorities it grants depends on the user's
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
