#include <brindle/threads/DroppedException.h>

#include "threads/src/executors/DropException.h"

#include <atomic>

namespace brindle::threads {

namespace {

std::atomic<DroppedExceptionHook> S_hookP{nullptr};
std::atomic<DroppedExceptionHook> S_traceP{nullptr};

void Call(DroppedExceptionHook inHook, std::string const& inExecutorName) noexcept {
    if (inHook == nullptr) {
        return;
    }
    try {
        inHook(std::current_exception(), inExecutorName.c_str());
    } catch (...) { // documented: what a hook throws is dropped
    }
}

} // namespace

DroppedExceptionHook SetDroppedExceptionHook(DroppedExceptionHook inHook) noexcept {
    return S_hookP.exchange(inHook, std::memory_order_acq_rel);
}

void SetDroppedExceptionTrace(DroppedExceptionHook inHook) noexcept {
    S_traceP.store(inHook, std::memory_order_release);
}

void DropException(std::string const& inExecutorName) noexcept {
    Call(S_hookP.load(std::memory_order_acquire), inExecutorName);
    Call(S_traceP.load(std::memory_order_acquire), inExecutorName);
}

} // namespace brindle::threads
