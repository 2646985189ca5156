#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>
#include <brindle/threads/CancelToken.h>
#include <brindle/threads/LoopCall.h>
#include <brindle/threads/TaskRefused.h>
#include <brindle/utility/RefCountedObject.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <atomic>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

namespace brindle::threads {

namespace impl {

class TaskGroupState;

/// A function of a group.
class BRN_API Task : public utility::RefCountedObject {
public:
    Task();
    ~Task() override;

private:
    friend class TaskGroupState;

    virtual void Call() = 0;
    virtual void ReleaseFunction() noexcept = 0;

    boost::intrusive_ptr<TaskGroupState> mGroup;
    std::atomic<int> mTickets{0}; // copies of what was posted, each of which may call the function
    // Changed with the group's mutex locked.
    std::atomic<bool> mIsWaiting{false};
    Task* mPrevious = nullptr;
    Task* mNext = nullptr;
};

template <typename Function>
class TaskOf final : public Task {
public:
    template <typename Argument>
    explicit TaskOf(std::in_place_t, Argument&& inFunction)
        : mFunction(std::in_place, std::forward<Argument>(inFunction)) {}

private:
    void Call() override { (*mFunction)(); }
    void ReleaseFunction() noexcept override { mFunction.reset(); }

    std::optional<Function> mFunction;
};

/// What is called on a loop when a group is done.
class BRN_API Completion : public LoopCall {
public:
    std::exception_ptr failure; ///< set before this is posted
};

template <typename Function>
class CompletionOf final : public Completion {
public:
    template <typename Argument>
    explicit CompletionOf(std::in_place_t, Argument&& inFunction)
        : mFunction(std::in_place, std::forward<Argument>(inFunction)) {}

private:
    void Call() override {
        Function function = *std::move(mFunction); // it is called once
        mFunction.reset();
        function(failure);
    }
    void ReleaseFunction() noexcept override { mFunction.reset(); }

    std::optional<Function> mFunction;
};

} // namespace impl

/// Functions that run on an executor. None of them runs after the group was destroyed, so they may
/// use everything that was declared before it.
///
///     TaskGroup group(pool);
///     for (File const& file : files) { group.Run([&] { Import(file, group.Token()); }); }
///     group.Wait();
///
/// Any thread may call any operation, also a function of the group, which may add more. Functions
/// may be of any type that can be moved. They are destroyed as soon as they have returned.
///
/// The first exception that leaves a function cancels the group and is kept for `Wait`. In a group
/// that is cancelled no more functions begin; those that run can ask the token. A
/// `cancelled_exception` that leaves a function of a cancelled group is no failure.
///
/// The functions run on threads of the executor alone. The group keeps the executor. In a forked
/// child, a group of the parent can only be destroyed, which does nothing.
///
/// Beside the standard library: a set of `std::future` that is waited for as a whole, whose
/// destructor waits, and whose first exception cancels the rest.
class BRN_API TaskGroup {
public:
    /// Throws `std::invalid_argument` if there is no executor, and `std::bad_alloc`.
    explicit TaskGroup(boost::shared_ptr<AsyncExecutor> inExecutor);
    TaskGroup(TaskGroup const&) = delete;
    TaskGroup& operator=(TaskGroup const&) = delete;
    /// Cancels the group and blocks until the functions that have begun have returned. No function
    /// and no completion begins after it. An exception that nobody waited for is dropped. If a
    /// function or a completion of the group destroys it, this waits for the others.
    ~TaskGroup();

    /// Has the function called on the executor; if the group is cancelled, destroys it. Throws
    /// `task_refused_exception` if the executor does not accept it, and `std::bad_alloc`; then the
    /// function is not called.
    template <typename Function>
    void Run(Function&& inFunction) {
        using Stored = std::decay_t<Function>;
        static_assert(std::is_invocable_v<Stored&>, "a function of a group takes no argument");
        if constexpr (std::is_invocable_v<Stored&>) {
            RunTask(new impl::TaskOf<Stored>(std::in_place, std::forward<Function>(inFunction)));
        }
    }

    /// Blocks until all functions have returned, and rethrows the first exception, in every call. A
    /// function that the executor released without calling it counts as one that threw
    /// `task_refused_exception`.
    ///
    /// On a thread of the executor it calls the group's functions itself instead of waiting for a
    /// thread that is free; so work on a pool of one worker may split itself up, and a loop may
    /// wait for what it was given. On other threads it waits as long as the executor calls nothing:
    /// if it is suspended, has no threads, or if its loop does not turn. Throws `std::bad_alloc`,
    /// and `std::logic_error` if a function of the group calls it, which would wait for itself.
    void Wait();

    /// Tells the functions of the group that they are not wanted: those that have not started are
    /// not called, the others see it by `Token`.
    void Cancel() noexcept;
    /// Whether `Cancel` was called, or a function has thrown.
    bool IsCancelled() const noexcept;
    /// For functions that take long, and for functions that they call.
    CancelToken Token() const;

    /// Has the function called with the first exception, or null, on the executor, usually a loop,
    /// when all functions have returned that were added until then; at once if there are none. It
    /// is called once, never inside `WhenDone`, and not after the group was destroyed; so it may
    /// use what lives as long as the group. `Wait` does not wait for it.
    ///
    ///     group.WhenDone(loop, [&](std::exception_ptr failure) { window.Finish(failure); });
    ///
    /// It is dropped if the executor does not accept it. Throws `std::bad_alloc`.
    template <typename Function>
    void WhenDone(boost::shared_ptr<AsyncExecutor> inExecutor, Function&& inFunction) {
        static_assert(std::is_invocable_v<std::decay_t<Function>&, std::exception_ptr>,
                      "the function takes the first exception, a std::exception_ptr");
        AddCompletion(std::move(inExecutor),
                      new impl::CompletionOf<std::decay_t<Function>>(
                          std::in_place, std::forward<Function>(inFunction)));
    }

private:
    void RunTask(boost::intrusive_ptr<impl::Task> const& inTask);
    void AddCompletion(boost::shared_ptr<AsyncExecutor> inExecutor,
                       boost::intrusive_ptr<impl::Completion> inCompletion);

    boost::shared_ptr<AsyncExecutor> const mExecutor;
    boost::intrusive_ptr<impl::TaskGroupState> mState;
};

} // namespace brindle::threads
