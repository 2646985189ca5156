#pragma once

#include <brindle/threads/AsyncEventLoopAdaptor.h>

#include "platform/Fork.h"
#include "threads/src/executors/EventLoopTarget.h"
#include "threads/src/executors/MessagePoster.h"

#include <boost/noncopyable.hpp>

#include <string>

namespace brindle::threads {

/// Makes an executor of the loop of the thread that constructs it. Each immediate item goes into
/// the target's queue, and a message, its pump, to the loop. A pump runs the oldest item, so items
/// run in the order of posting, in whatever order the pumps arrive.
class EventLoopAdaptor : public AsyncEventLoopAdaptor, boost::noncopyable {
public:
    explicit EventLoopAdaptor(std::string const& inName);
    ~EventLoopAdaptor() override;

    bool Post(boost::function0<void> const& inFunction, std::uint32_t inDelayMilliseconds) override;
    /// As `Post`, without a copy: takes the item if it returns true.
    [[nodiscard]] bool PostItem(AllocatedFunction::Pointer& ioItem,
                                std::uint32_t inDelayMilliseconds);
    bool IsCurrentThreadExecutorThread() override;
    std::int32_t GetThreadCount() override { return 1; }
    void Drain() override;
    /// Runs the oldest immediate item, as `Drain` does. False if there is none.
    bool DrainOne() { return mTarget->DispatchOne(); }
    std::string const& Name() const noexcept { return mTarget->ExecutorName(); }

private:
    bool IsInherited() const noexcept { return platform::ForkCount() != mForkCount; }
    bool PostImmediate(AllocatedFunction::Pointer& ioItem);
    bool PostDelayed(AllocatedFunction::Pointer& ioItem, std::uint32_t inDelayMilliseconds);

    // In a forked child, other threads may have been changing the target, so it is neither used nor
    // released there.
    std::uint32_t const mForkCount = platform::ForkCount();
    MessagePoster mPoster;
    boost::intrusive_ptr<EventLoopTarget> mTarget; // not changed before the destructor
};

} // namespace brindle::threads
