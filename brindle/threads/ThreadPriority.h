#pragma once

#include <cstdint>

namespace brindle::threads {

/// How the system prefers a thread to others. Which priorities it grants depends on the user's
/// rights.
enum ThreadPriority : std::int32_t {
    kThreadPriorityIdle = 0,        ///< for work that may wait for everything else
    kThreadPriorityLowest = 1,      ///< for work that nobody waits for
    kThreadPriorityBelowNormal = 2, ///< for work beside the user's
    kThreadPriorityNormal = 3,      ///< that of a new thread
    kThreadPriorityAboveNormal = 4, ///< for what the user waits for
    kThreadPriorityHighest = 5      ///< for what must not be late, such as sound
};

} // namespace brindle::threads
