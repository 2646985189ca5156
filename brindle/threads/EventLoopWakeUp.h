#pragma once

#include <brindle/Export.h>

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>

#include <memory>

namespace brindle::threads {

/// Wakes the loop of the calling thread by a function, as long as it exists: for a loop that cannot
/// watch the descriptor of `EventLoop.h`.
///
///     EventLoopWakeUp const wakeUp([] { glfwPostEmptyEvent(); });
///     auto const loop = AdaptCurrentEventLoopAsExecutor();
///     while (DispatchMessages()) { glfwWaitEvents(); }
///
/// The function has the loop call `DispatchMessages` later. It is called when messages of the
/// thread's executors begin to wait, and again when messages arrive after the beginning of the last
/// `DispatchMessages`: a loop that calls `DispatchMessages` after each call of the function handles
/// every message, also in a loop that is nested in it, and need not look for them otherwise. Many
/// messages share a call. There may be a call for nothing.
///
/// It is called by the thread that posts, several of them at once, and for delayed functions by the
/// library's timer. So it only hands an event to the loop, and returns at once. It must not wait
/// for a thread, or acquire a lock that is held while this object is destroyed. A post to an
/// executor of the same loop may not wake it from there. What it throws is dropped as described in
/// `DroppedException.h`, under the empty name; the next post calls it again.
///
/// `AsyncEventLoopExecutor` has a loop of its own, which needs none; a loop that one of its
/// functions runs may.
class BRN_API EventLoopWakeUp : boost::noncopyable {
public:
    /// Calls the function once, for messages that wait already. Throws `std::logic_error` if the
    /// thread has a wake-up already, `boost::bad_function_call` if the function is empty, and as
    /// `EventLoopDescriptor`.
    explicit EventLoopWakeUp(boost::function<void()> inFunction);
    /// Blocks until the calls that other threads are in have returned. No call comes later. Any
    /// thread may call, also in the function.
    ~EventLoopWakeUp();

private:
    struct State;
    std::unique_ptr<State> mState;
};

} // namespace brindle::threads
