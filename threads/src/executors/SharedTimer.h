#pragma once

#include <brindle/threads/AsyncThreadedExecutor.h>

namespace brindle::threads {

/// The one executor of the process, of one thread, that sends messages to event loops when they are
/// due. It is there as long as somebody holds it; nothing else is to run on it. Any thread may
/// call. Throws as `CreateAsyncThreadedExecutor`.
boost::shared_ptr<AsyncThreadedExecutor> SharedTimer();

} // namespace brindle::threads
