#pragma once

#include <brindle/threads/AsyncThreadedExecutor.h>

namespace brindle::threads {

/// The executor that sends messages to event loops when they are due: one for the process, with one
/// thread. It exists as long as it is referred to, and runs nothing else. A timer made by a thread
/// below normal priority, which may hold it back, is replaced for the adaptors that threads of
/// normal priority make. Any thread may call. Throws as `CreateAsyncThreadedExecutor`.
[[nodiscard]] boost::shared_ptr<AsyncThreadedExecutor> SharedTimer();

} // namespace brindle::threads
