#pragma once

#include <brindle/threads/AsyncEventLoopAdaptor.h>

#include "threads/src/executors/EventLoopWindow.h"
#include "threads/src/executors/MessagePoster.h"

#include <boost/noncopyable.hpp>

namespace brindle::threads {

/// Makes an executor of the loop of the thread that constructs it. Each immediate item goes into
/// the window's queue and is followed by a pump; a pump runs the oldest item, so items run in the
/// order of posting, whatever way the pumps come.
class EventLoopAdaptor : public AsyncEventLoopAdaptor, boost::noncopyable {
public:
    EventLoopAdaptor();
    ~EventLoopAdaptor() override;

    bool Post(boost::function0<void> const& inFunction, std::uint32_t inDelayMilliseconds) override;
    /// As `Post`; takes the item if it returns true.
    bool PostItem(AllocatedFunction::Pointer& ioItem, std::uint32_t inDelayMilliseconds);
    bool IsCurrentThreadExecutorThread() override;
    std::int32_t GetThreadCount() override { return 1; }
    void Drain() override;

private:
    bool PostImmediate(AllocatedFunction::Pointer& ioItem);
    bool PostDelayed(AllocatedFunction::Pointer& ioItem, std::uint32_t inDelayMilliseconds);

    MessagePoster mPoster;
    boost::intrusive_ptr<EventLoopWindow> const mWindow;
};

} // namespace brindle::threads
