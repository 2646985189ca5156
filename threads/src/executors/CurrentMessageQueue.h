#pragma once

#include "platform/MessageLoop.h"

namespace brindle::threads {

/// The queue of the calling thread, which gets one if it has none. That the system has no more
/// descriptors is reported, and is a `boost::thread_resource_error` if the report returns.
boost::intrusive_ptr<platform::MessageQueue> CurrentMessageQueue();

} // namespace brindle::threads
