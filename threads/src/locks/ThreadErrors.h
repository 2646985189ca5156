#pragma once

#include <boost/thread/exceptions.hpp>

#include <utility>

namespace brindle::threads {

/// These report through `config::ThrowError` that a thread or a lock could not be made or used.
void ReportNoThreadResources();
void ReportLockFailure();

/// Calls a function that uses Boost.Thread. A lack of resources or a failed lock is reported first,
/// and if the report returns, Boost's exception goes on to the caller. Other exceptions pass
/// unreported.
template <typename Function>
decltype(auto) ReportingThreadErrors(Function&& inFunction) {
    try {
        return std::forward<Function>(inFunction)();
    } catch (boost::thread_resource_error const&) {
        ReportNoThreadResources();
        throw;
    } catch (boost::lock_error const&) {
        ReportLockFailure();
        throw;
    }
}

} // namespace brindle::threads
