#include <brindle/threads/TaskGroup.h>

#include "threads/src/tasks/TaskGroupState.h"

#include <stdexcept>

namespace brindle::threads {

using impl::TaskGroupState;

TaskGroup::TaskGroup(boost::shared_ptr<AsyncExecutor> inExecutor)
    : mExecutor(std::move(inExecutor)), mState(new TaskGroupState) {
    if (mExecutor == nullptr) {
        throw std::invalid_argument("a TaskGroup needs an executor");
    }
}

TaskGroup::~TaskGroup() {
    if (mState->IsInherited()) {
        mState.detach();
        return;
    }
    mState->Close();
}

void TaskGroup::Wait() {
    mState->Wait(*mExecutor);
}

void TaskGroup::Cancel() noexcept {
    mState->Cancel();
}

bool TaskGroup::IsCancelled() const noexcept {
    return mState->Source().IsCancelled();
}

CancelToken TaskGroup::Token() const {
    return mState->Source().Token();
}

void TaskGroup::RunTask(boost::intrusive_ptr<impl::Task> const& inTask) {
    if (!mState->Add(*inTask)) {
        return;
    }
    TaskGroupState::Ticket const ticket(inTask);
    bool isAccepted = false;
    // A task that a thread in `Wait` has begun meanwhile is not refused any more.
    try {
        isAccepted = mExecutor->Post(ticket, 0);
    } catch (...) {
        if (ticket.Withdraw()) {
            throw;
        }
    }
    if (!isAccepted && ticket.Withdraw()) {
        throw task_refused_exception();
    }
}

void TaskGroup::AddCompletion(boost::shared_ptr<AsyncExecutor> inExecutor,
                              boost::intrusive_ptr<impl::Completion> inCompletion) {
    mState->AddCompletion(std::move(inExecutor), std::move(inCompletion));
}

} // namespace brindle::threads
