#pragma once

#include "platform/MessageLoop.h"

namespace brindle::threads {

/// The queue of the calling thread, made by its first call. A lack of descriptors is reported, and
/// throws `boost::thread_resource_error` if the report returns.
[[nodiscard]] boost::intrusive_ptr<platform::MessageQueue> CurrentMessageQueue();

} // namespace brindle::threads
