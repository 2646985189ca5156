#include "threads/src/tasks/CallFrame.h"

namespace brindle::threads {

namespace {

thread_local CallFrame const* S_innermostP = nullptr;

} // namespace

CallFrame::CallFrame(void const* inOwner, std::size_t inCount) noexcept
    : mOwner(inOwner), mCount(inCount), mOuter(S_innermostP) {
    S_innermostP = this;
}

CallFrame::~CallFrame() {
    S_innermostP = mOuter;
}

std::size_t CallFrame::CountOf(void const* inOwner) noexcept {
    std::size_t count = 0;
    for (CallFrame const* frame = S_innermostP; frame != nullptr; frame = frame->mOuter) {
        count += frame->mOwner == inOwner ? frame->mCount : 0;
    }
    return count;
}

} // namespace brindle::threads
