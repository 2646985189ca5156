#pragma once

#include <brindle/Export.h>

#include <boost/smart_ptr/make_shared_object.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <atomic>
#include <exception>
#include <utility>

namespace brindle::threads {

/// Leaves work that was cancelled. See `CancelToken::ThrowIfCancelled`.
///
/// Beside the standard library: there is none; code that asks a `std::stop_token` returns instead.
class BRN_API cancelled_exception : public std::exception {
public:
    char const* what() const noexcept override; ///< in English, for developers
};

/// Tells work that it is no longer wanted. Any thread may ask at any time; tokens are copied freely
/// and may outlive what they came from. A token that was default-constructed is never cancelled.
///
/// Beside the standard library: as C++20's `std::stop_token`, without callbacks.
class CancelToken {
public:
    CancelToken() = default;

    /// True from `Cancel` on, for ever. What the thread that cancelled did before is visible then.
    bool IsCancelled() const noexcept {
        return mIsCancelled != nullptr && mIsCancelled->load(std::memory_order_acquire);
    }
    /// Throws `cancelled_exception` if the work is cancelled.
    void ThrowIfCancelled() const {
        if (IsCancelled()) {
            throw cancelled_exception();
        }
    }

private:
    friend class CancelSource;

    explicit CancelToken(boost::shared_ptr<std::atomic<bool>> inIsCancelled)
        : mIsCancelled(std::move(inIsCancelled)) {}

    boost::shared_ptr<std::atomic<bool>> mIsCancelled;
};

/// Cancels work that was given its token.
///
///     CancelSource source;
///     pool->Post([token = source.Token()] { while (!token.IsCancelled()) { Step(); } }, 0);
///     source.Cancel();
///
/// Any thread may call any operation. What a thread did before `Cancel` is visible to whoever finds
/// the token cancelled.
///
/// Beside the standard library: as C++20's `std::stop_source`.
class CancelSource {
public:
    CancelSource() : mToken(boost::make_shared<std::atomic<bool>>(false)) {}

    /// Cancels the work for good. Calling it again has no effect.
    void Cancel() noexcept { mToken.mIsCancelled->store(true, std::memory_order_release); }
    /// Whether `Cancel` was called.
    bool IsCancelled() const noexcept { return mToken.IsCancelled(); }
    /// A token for the work, as many as there are readers.
    CancelToken Token() const { return mToken; }

private:
    CancelToken mToken;
};

} // namespace brindle::threads
