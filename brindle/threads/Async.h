#pragma once

#include <brindle/threads/AsyncExecutor.h>
#include <brindle/threads/TaskRefused.h>

#include <boost/smart_ptr/make_shared_object.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <exception>
#include <future>
#include <optional>
#include <type_traits>
#include <utility>

namespace brindle::threads {

namespace impl {

/// A function that puts what it returns or throws into a future.
template <typename Function>
class PromisedCall {
public:
    using Result = std::invoke_result_t<Function&>;

    template <typename Argument>
    explicit PromisedCall(std::in_place_t, Argument&& inFunction)
        : mFunction(std::in_place, std::forward<Argument>(inFunction)) {}

    std::future<Result> Future() { return mPromise.get_future(); }

    void operator()() {
        // The function is destroyed before the future is ready, so that nothing that it owns
        // outlives `get`.
        try {
            if constexpr (std::is_void_v<Result>) {
                (*mFunction)();
                mFunction.reset();
                mPromise.set_value();
            } else {
                Result result = (*mFunction)();
                mFunction.reset();
                mPromise.set_value(std::forward<Result>(result));
            }
        } catch (...) {
            mFunction.reset();
            mPromise.set_exception(std::current_exception());
        }
    }

private:
    std::promise<Result> mPromise; // destroyed after the function, if no one calls it
    std::optional<Function> mFunction;
};

} // namespace impl

/// Has the function called on the executor. The future gives what it returns or throws.
///
///     std::future<Image> image = Async(pool, [file] { return Decode(file); });
///     Show(image.get());
///
/// Throws `task_refused_exception` if the executor does not accept the function. If the executor
/// releases the function without calling it, the future throws `std::future_error`. Destroying the
/// future does not wait. To wait for a future on a worker of the same executor blocks that worker,
/// and for ever if there is no other; a `TaskGroup` does not.
///
/// The function need not be copyable. It is destroyed before the future becomes ready.
template <typename Function>
[[nodiscard]] auto Async(boost::shared_ptr<AsyncExecutor> const& inExecutor,
                         Function&& inFunction) {
    static_assert(std::is_invocable_v<std::decay_t<Function>&>, "the function takes nothing");
    using Call = impl::PromisedCall<std::decay_t<Function>>;
    auto const call = boost::make_shared<Call>(std::in_place, std::forward<Function>(inFunction));
    auto future = call->Future();
    if (!inExecutor->Post([call] { (*call)(); }, 0)) {
        throw task_refused_exception();
    }
    return future;
}

} // namespace brindle::threads
