#pragma once

#include <brindle/Export.h>

#include <boost/function.hpp>

#include <cstdint>

namespace brindle::threads {

/// Runs functions asynchronously, now or after a delay. Any thread may call any operation.
///
/// An exception that leaves a function is dropped, and the executor goes on.
class BRN_API AsyncExecutor {
public:
    virtual ~AsyncExecutor();

    /// Has a copy of the function called after the delay; with a delay of 0, as soon as possible.
    /// False if the executor does not accept it; then the function is not called. An empty function
    /// is accepted and skipped. Throws `std::bad_alloc`. Does not block.
    virtual bool Post(boost::function0<void> const& inFunction,
                      std::uint32_t inDelayMilliseconds) = 0;

    /// Whether the calling thread belongs to this executor. Throws `std::bad_alloc`.
    virtual bool IsCurrentThreadExecutorThread() = 0;

    /// The number of threads on which the executor runs functions.
    virtual std::int32_t GetThreadCount() = 0;
};

} // namespace brindle::threads
