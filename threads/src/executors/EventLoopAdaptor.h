#pragma once

#include <brindle/threads/AsyncEventLoopAdaptor.h>

#include "threads/src/executors/EventLoopTarget.h"
#include "threads/src/executors/MessagePoster.h"

#include <boost/noncopyable.hpp>

namespace brindle::threads {

/// Makes an executor of the loop of the thread that constructs it. Each immediate item goes into
/// the target's queue, and a message, its pump, to the loop. A pump runs the oldest item, so items
/// run in the order of posting, in whatever order the pumps arrive.
class EventLoopAdaptor : public AsyncEventLoopAdaptor, boost::noncopyable {
public:
    EventLoopAdaptor();
    ~EventLoopAdaptor() override;

    bool Post(boost::function0<void> const& inFunction, std::uint32_t inDelayMilliseconds) override;
    /// As `Post`, without a copy: takes the item if it returns true.
    [[nodiscard]] bool PostItem(AllocatedFunction::Pointer& ioItem,
                                std::uint32_t inDelayMilliseconds);
    bool IsCurrentThreadExecutorThread() override;
    std::int32_t GetThreadCount() override { return 1; }
    void Drain() override;

private:
    bool PostImmediate(AllocatedFunction::Pointer& ioItem);
    bool PostDelayed(AllocatedFunction::Pointer& ioItem, std::uint32_t inDelayMilliseconds);

    MessagePoster mPoster;
    boost::intrusive_ptr<EventLoopTarget> const mTarget;
};

} // namespace brindle::threads
