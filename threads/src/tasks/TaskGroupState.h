#pragma once

#include <brindle/threads/TaskGroup.h>

#include "platform/Fork.h"
#include "utility/src/base/Mutex.h"

#include <cstddef>
#include <vector>

namespace brindle::threads::impl {

/// What a group shares with the tickets of its tasks, which may outlive it in the executor. A task
/// waits in the list until a ticket, `Wait` or `Cancel` takes it out, so it is called at most once
/// and needs none of these in particular.
class TaskGroupState : public utility::RefCountedObject {
public:
    /// What is posted for a task. The last copy that goes without a call tells that the executor
    /// has dropped the task.
    class Ticket {
    public:
        explicit Ticket(boost::intrusive_ptr<Task> inTask) noexcept;
        Ticket(Ticket const& inOther) noexcept : Ticket(inOther.mTask) {}
        Ticket& operator=(Ticket const&) = delete;
        ~Ticket();

        void operator()() const { mTask->mGroup->RunTicketOf(*mTask); }
        /// Takes the task back, if it has not begun. False if it has.
        bool Withdraw() const noexcept { return mTask->mGroup->ReleaseWaiting(*mTask, nullptr); }

    private:
        boost::intrusive_ptr<Task> const mTask;
    };

    /// False if the group is cancelled.
    [[nodiscard]] bool Add(Task& ioTask);
    void Wait(AsyncExecutor& ioExecutor);
    void Cancel() noexcept;
    CancelSource const& Source() const noexcept { return mSource; }
    void AddCompletion(boost::shared_ptr<AsyncExecutor> inExecutor,
                       boost::intrusive_ptr<Completion> inCompletion);
    /// Cancels, waits for what other threads run, and closes the completions.
    void Close() noexcept;
    /// In a forked child, threads that do not exist there may hold the mutex or run tasks.
    bool IsInherited() const noexcept { return platform::ForkCount() != mForkCount; }

private:
    struct PendingCompletion {
        boost::shared_ptr<AsyncExecutor> executor; // null once it is posted
        boost::intrusive_ptr<Completion> call;
    };

    void RunTicketOf(Task& ioTask);
    bool ReleaseWaiting(Task& ioTask, std::exception_ptr const& inFailure) noexcept;
    void Unlink(Task& ioTask) BRN_REQUIRES(mMutex);
    void RunUnlinked(Task& ioTask);
    void Fail(std::exception_ptr inFailure) noexcept;
    void Finish(std::size_t inCount) noexcept;
    void PostCompletions() noexcept;
    bool TakeUnposted(PendingCompletion& outCompletion);

    std::uint32_t const mForkCount = platform::ForkCount();
    CancelSource mSource;
    utility::Mutex mMutex;
    utility::Condition mChanged;
    // The tasks that have not begun, oldest first.
    Task* mFirst BRN_GUARDED_BY(mMutex) = nullptr;
    Task* mLast BRN_GUARDED_BY(mMutex) = nullptr;
    std::size_t mUnfinished BRN_GUARDED_BY(mMutex) = 0; // those, and the ones that run
    std::size_t mHelpers BRN_GUARDED_BY(mMutex) = 0;    // threads in `Wait` that call tasks
    std::size_t mWakeAt BRN_GUARDED_BY(mMutex) = 0; // unfinished tasks that `Close` puts up with
    std::exception_ptr mFailure BRN_GUARDED_BY(mMutex);
    std::vector<PendingCompletion> mCompletions BRN_GUARDED_BY(mMutex);
};

} // namespace brindle::threads::impl
