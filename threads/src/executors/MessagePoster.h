#pragma once

#include <brindle/threads/AsyncThreadedExecutor.h>

#include "platform/MessageLoop.h"

#include <boost/noncopyable.hpp>

#include <cstdint>

namespace brindle::threads {

/// Sends messages to a loop, now or after a delay.
class MessagePoster : boost::noncopyable {
public:
    /// Throws as `SharedTimer`.
    MessagePoster();

    /// Any thread may call. False if the loop's thread has ended or the timer has no memory; throws
    /// `std::bad_alloc`.
    [[nodiscard]] bool Post(boost::intrusive_ptr<platform::Message> const& inMessage,
                            std::uint32_t inDelayMilliseconds);

private:
    boost::shared_ptr<AsyncThreadedExecutor> const mTimer;
};

} // namespace brindle::threads
