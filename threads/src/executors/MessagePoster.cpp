#include "threads/src/executors/MessagePoster.h"

#include "threads/src/executors/SharedTimer.h"

namespace brindle::threads {

MessagePoster::MessagePoster() : mTimer(SharedTimer()) {}

bool MessagePoster::Post(boost::intrusive_ptr<platform::Message> const& inMessage,
                         std::uint32_t inDelayMilliseconds) {
    if (inDelayMilliseconds == 0) {
        return inMessage->Target()->Send(inMessage);
    }
    // A message that cannot be sent is released on the timer's thread, which does not release its
    // item.
    return inMessage->Target()->IsAccepting() &&
           mTimer->Post(
               [message = inMessage] { static_cast<void>(message->Target()->Send(message)); },
               inDelayMilliseconds);
}

} // namespace brindle::threads
