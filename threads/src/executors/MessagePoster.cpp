#include "threads/src/executors/MessagePoster.h"

#include "threads/src/executors/SharedTimer.h"

namespace brindle::threads {

MessagePoster::MessagePoster() : mTimer(SharedTimer()) {}

bool MessagePoster::Post(boost::intrusive_ptr<platform::Message> const& inMessage,
                         std::uint32_t inDelayMilliseconds) {
    // A window's own thread handles what it sends inside the call: the timer sends it instead.
    if (inDelayMilliseconds == 0 && !inMessage->Window()->IsOfCurrentThread()) {
        return inMessage->Window()->SendNotify(inMessage);
    }
    return mTimer->Post([message = inMessage] { message->Window()->SendNotify(message); },
                        inDelayMilliseconds);
}

} // namespace brindle::threads
