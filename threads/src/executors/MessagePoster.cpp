#include "threads/src/executors/MessagePoster.h"

#include "threads/src/executors/SharedTimer.h"

namespace brindle::threads {

MessagePoster::MessagePoster() : mTimer(SharedTimer()) {}

bool MessagePoster::Post(boost::intrusive_ptr<platform::Message> const& inMessage,
                         std::uint32_t inDelayMilliseconds) {
    // On the loop's own thread the message would be handled inside the call, so the timer sends it.
    if (inDelayMilliseconds == 0 && !inMessage->Target()->IsOfCurrentThread()) {
        return inMessage->Target()->Send(inMessage);
    }
    // A message that cannot be sent is released.
    return mTimer->Post(
        [message = inMessage] { static_cast<void>(message->Target()->Send(message)); },
        inDelayMilliseconds);
}

} // namespace brindle::threads
