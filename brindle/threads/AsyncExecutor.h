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

    /// Has a copy of the function called, as soon as possible with a delay of 0. False if the
    /// executor does not accept it, and then it is not called. An empty function is accepted and
    /// skipped. Throws `std::bad_alloc`. Does not block.
    virtual bool Post(boost::function0<void> const& inFunction,
                      std::uint32_t inDelayMilliseconds) = 0;

    /// Whether the caller is a thread of this executor. Throws `std::bad_alloc`.
    virtual bool IsCurrentThreadExecutorThread() = 0;

    /// How many threads the executor runs on.
    virtual std::int32_t GetThreadCount() = 0;
};

} // namespace brindle::threads
