#include "threads/src/tasks/TaskGroupState.h"

#include "threads/src/tasks/CallFrame.h"

#include <new>
#include <stdexcept>

namespace brindle::threads::impl {

Task::Task() = default;
Task::~Task() = default;

TaskGroupState::Ticket::Ticket(boost::intrusive_ptr<Task> inTask) noexcept
    : mTask(std::move(inTask)) {
    mTask->mTickets.fetch_add(1, std::memory_order_relaxed);
}

TaskGroupState::Ticket::~Ticket() {
    if (mTask->mTickets.fetch_sub(1, std::memory_order_acq_rel) == 1 && mTask->mIsWaiting) {
        mTask->mGroup->ReleaseWaiting(*mTask, std::make_exception_ptr(task_refused_exception()));
    }
}

bool TaskGroupState::Add(Task& ioTask) {
    ioTask.mGroup = this;
    utility::MutexLock const lock(mMutex);
    if (mSource.IsCancelled()) {
        return false;
    }
    ioTask.mPrevious = mLast;
    (mLast == nullptr ? mFirst : mLast->mNext) = &ioTask;
    mLast = &ioTask;
    ioTask.mIsWaiting = true;
    ++mUnfinished;
    if (mHelpers > 0) {
        mChanged.NotifyAll();
    }
    return true;
}

void TaskGroupState::Wait(AsyncExecutor& ioExecutor) {
    if (CallFrame::CountOf(this) > 0) {
        throw std::logic_error("a function of a TaskGroup waits for its own group");
    }
    // A function that is called here may own the group.
    boost::intrusive_ptr<TaskGroupState> const kept(this);
    utility::MutexLock lock(mMutex);
    if (mUnfinished > 0) {
        lock.Unlock(); // the executor may be a client's
        bool const isHelping = ioExecutor.IsCurrentThreadExecutorThread();
        lock.Lock();
        mHelpers += isHelping ? 1 : 0;
        while (mUnfinished > 0) {
            if (!isHelping || mFirst == nullptr) {
                mChanged.Wait(lock);
                continue;
            }
            boost::intrusive_ptr<Task> const task(mFirst);
            Unlink(*task);
            lock.Unlock();
            RunUnlinked(*task);
            lock.Lock();
        }
        mHelpers -= isHelping ? 1 : 0;
    }
    std::exception_ptr const failure = mFailure;
    lock.Unlock();
    if (failure != nullptr) {
        std::rethrow_exception(failure);
    }
}

/// Until their functions are released, the tasks that had not begun count as unfinished.
void TaskGroupState::Cancel() noexcept {
    // A function that is released may own the group.
    boost::intrusive_ptr<TaskGroupState> const kept(this);
    std::size_t count = 0;
    Task* next = nullptr;
    {
        utility::MutexLock const lock(mMutex);
        mSource.Cancel();
        next = mFirst;
        for (Task* task = next; task != nullptr; task = task->mNext, ++count) {
            task->AddRef(); // the tickets may go meanwhile
            task->mIsWaiting = false;
        }
        mFirst = nullptr;
        mLast = nullptr;
    }
    {
        CallFrame const frame(this, count);
        while (next != nullptr) {
            boost::intrusive_ptr<Task> const task(next, false);
            next = task->mNext;
            task->ReleaseFunction();
        }
    }
    Finish(count);
}

void TaskGroupState::AddCompletion(boost::shared_ptr<AsyncExecutor> inExecutor,
                                   boost::intrusive_ptr<Completion> inCompletion) {
    {
        utility::MutexLock const lock(mMutex);
        mCompletions.push_back({std::move(inExecutor), std::move(inCompletion)});
    }
    PostCompletions();
}

void TaskGroupState::Close() noexcept {
    Cancel();
    std::size_t const own = CallFrame::CountOf(this);
    std::vector<PendingCompletion> completions;
    {
        utility::MutexLock lock(mMutex);
        mWakeAt = own;
        while (mUnfinished > own) {
            mChanged.Wait(lock);
        }
        completions.swap(mCompletions);
    }
    for (PendingCompletion const& completion : completions) {
        completion.call->Close();
    }
}

void TaskGroupState::RunTicketOf(Task& ioTask) {
    {
        utility::MutexLock const lock(mMutex);
        if (!ioTask.mIsWaiting) {
            return;
        }
        Unlink(ioTask);
    }
    RunUnlinked(ioTask);
}

/// Finishes a task that has not begun without calling it, as a failed one unless the failure is
/// null. False if it has begun.
bool TaskGroupState::ReleaseWaiting(Task& ioTask, std::exception_ptr const& inFailure) noexcept {
    {
        utility::MutexLock const lock(mMutex);
        if (!ioTask.mIsWaiting) {
            return false;
        }
        Unlink(ioTask);
    }
    {
        CallFrame const frame(this);
        ioTask.ReleaseFunction();
        if (inFailure != nullptr) {
            Fail(inFailure);
        }
    }
    Finish(1);
    return true;
}

void TaskGroupState::Unlink(Task& ioTask) {
    (ioTask.mPrevious == nullptr ? mFirst : ioTask.mPrevious->mNext) = ioTask.mNext;
    (ioTask.mNext == nullptr ? mLast : ioTask.mNext->mPrevious) = ioTask.mPrevious;
    ioTask.mIsWaiting = false;
}

void TaskGroupState::RunUnlinked(Task& ioTask) {
    {
        CallFrame const frame(this);
        std::exception_ptr failure;
        try {
            ioTask.Call();
        } catch (cancelled_exception const&) {
            if (!mSource.IsCancelled()) {
                failure = std::current_exception();
            }
        } catch (...) {
            failure = std::current_exception();
        }
        // What the function owns is gone before anybody learns that it has returned.
        ioTask.ReleaseFunction();
        if (failure != nullptr) {
            Fail(std::move(failure));
        }
    }
    Finish(1);
}

void TaskGroupState::Fail(std::exception_ptr inFailure) noexcept {
    {
        utility::MutexLock const lock(mMutex);
        if (mFailure == nullptr) {
            mFailure.swap(inFailure);
        }
    }
    Cancel();
}

/// Called when the frames of the tasks have ended, so that these and `mUnfinished` agree for a
/// thread that closes the group.
void TaskGroupState::Finish(std::size_t inCount) noexcept {
    {
        utility::MutexLock const lock(mMutex);
        mUnfinished -= inCount;
        if (mUnfinished <= mWakeAt) {
            mChanged.NotifyAll();
        }
        if (mUnfinished > 0 || mCompletions.empty()) {
            return;
        }
    }
    PostCompletions();
}

void TaskGroupState::PostCompletions() noexcept {
    // Declared here, so that the executor is released with the mutex unlocked: it may have been the
    // last reference.
    for (PendingCompletion completion; TakeUnposted(completion);) {
        try {
            completion.call->Post(*completion.executor);
        } catch (...) { // documented: it is dropped then
        }
    }
}

/// A completion that is to be posted now. It stays in the list, for `Close`.
bool TaskGroupState::TakeUnposted(PendingCompletion& outCompletion) {
    PendingCompletion taken;
    utility::MutexLock const lock(mMutex);
    for (PendingCompletion& completion : mCompletions) {
        if (mUnfinished == 0 && completion.executor != nullptr) {
            taken.executor.swap(completion.executor);
            taken.call = completion.call;
            taken.call->failure = mFailure;
            std::swap(outCompletion, taken);
            return true;
        }
    }
    return false;
}

} // namespace brindle::threads::impl
