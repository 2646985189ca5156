#pragma once

#include <boost/thread/exceptions.hpp>

#include <utility>

namespace brindle::threads {

/// Report through `config::ThrowError` what kept an operation of a thread or a lock from being
/// done.
void ReportNoThreadResources();
void ReportLockFailure();

/// Calls a function that calls into Boost.Thread. That there are no resources or that a lock fails
/// is first reported; if the report returns, Boost's exception goes on to the caller. Every other
/// exception passes untouched.
template <typename Function>
decltype(auto) Guarded(Function&& inFunction) {
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
