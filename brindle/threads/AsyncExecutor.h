#pragma once

#include <brindle/Export.h>
#include <brindle/utility/BoostFunction.h>

#include <cstdint>

namespace brindle::threads {

/// Runs functions asynchronously, now or after a delay. Any thread may call any operation.
///
/// An exception that leaves a function is dropped, and the executor goes on. A host that wants to
/// hear of it installs a hook (brindle/threads/DroppedException.h).
///
/// Delays are due by the system's clock. If that is set, functions run when it reaches their time:
/// setting it forward makes them run earlier, setting it back later. It goes on while the machine
/// is suspended, so functions that became due meanwhile run after it resumes. Functions that are
/// due at the same time begin in the order of posting.
///
/// In a forked child, the executors of the parent have no threads: they accept nothing,
/// `IsShutdown` is true, other operations do nothing, and destroying them releases nothing, so the
/// child can call `exit`. It may make executors of its own.
///
/// Beside the standard library: what `std::async` leaves open: on which threads, and in which
/// order. `threads::Async` gives a `std::future`.
class BRN_API AsyncExecutor {
public:
    virtual ~AsyncExecutor();

    /// Has a copy of the function called after the delay; with a delay of 0, as soon as possible.
    /// False if the executor does not accept it; then the function is not called. An empty function
    /// is accepted and skipped. Throws `std::bad_alloc`. Does not block.
    virtual bool Post(boost::function0<void> const& inFunction,
                      std::uint32_t inDelayMilliseconds) = 0;
    /// The same without a delay. A class that overrides the other form names both by a using
    /// declaration.
    bool Post(boost::function0<void> const& inFunction) { return Post(inFunction, 0); }

    /// Whether the calling thread belongs to this executor. Throws `std::bad_alloc`.
    virtual bool IsCurrentThreadExecutorThread() = 0;

    /// The number of threads on which the executor runs functions.
    virtual std::int32_t GetThreadCount() = 0;
};

} // namespace brindle::threads
