#include "arrange/src/tree/Pass.h"

namespace brindle::arrange::impl {

namespace {

thread_local Pass* S_outermost = nullptr;

} // namespace

Pass::Pass() noexcept {
    if (S_outermost == nullptr) {
        S_outermost = this;
    }
}

Pass::~Pass() {
    if (S_outermost == this) {
        S_outermost = nullptr;
    }
}

bool Pass::Keep(boost::shared_ptr<void> const& inObject) {
    if (S_outermost == nullptr) {
        return false;
    }
    S_outermost->mKept.push_back(inObject);
    return true;
}

} // namespace brindle::arrange::impl
