#include <brindle/threads/EventLoop.h>

#include "threads/src/executors/CurrentMessageQueue.h"
#include "threads/src/locks/ThreadErrors.h"

namespace brindle::threads {

boost::intrusive_ptr<platform::MessageQueue> CurrentMessageQueue() {
    return ReportingThreadErrors([] {
        auto queue = platform::MessageQueue::OfCurrentThread();
        if (queue == nullptr) {
            throw boost::thread_resource_error();
        }
        return queue;
    });
}

int EventLoopDescriptor() {
    return CurrentMessageQueue()->Descriptor();
}

bool DispatchMessages() {
    return CurrentMessageQueue()->DispatchMessages();
}

} // namespace brindle::threads
