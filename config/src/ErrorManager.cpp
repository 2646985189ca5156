#include <brindle/config/ErrorManager.h>

#include "config/src/Replay.h"

#include <brindle/config/DeferredErrorReporter.h>

#include <algorithm>

namespace brindle::config {

std::atomic<ErrorManager*> ErrorManager::S_managerP{nullptr};
thread_local bool Replay::S_isInProgress = false;

no_error_manager::no_error_manager()
    : std::logic_error("brn::config::ErrorManager not initialized. Check brn/config/Errors.") {}
no_error_manager::~no_error_manager() = default;

ErrorManager::ErrorManager() = default;

ErrorManager::~ErrorManager() {
    while (!mReporters.empty()) {
        RemoveDeferredErrorReporter(mReporters.front());
    }
}

bool ErrorManager::PurgeMemory(unsigned int) {
    return false;
}

void ErrorManager::IncrementLazilyDisplayErrors() {}

void ErrorManager::DecrementLazilyDisplayErrors() {}

std::int32_t ErrorManager::ExecuteFunctionWithTopLevelExceptionHandler(
    boost::function<std::int32_t()> inFunction) {
    constexpr std::int32_t kFailed = 1;
    try {
        return inFunction();
    } catch (...) {
        return kFailed;
    }
}

boost::intrusive_ptr<DeferredErrorReporter>
ErrorManager::NewDeferredErrorReporter(bool inReportWhenFinished) {
    return new DeferredErrorReporter(inReportWhenFinished);
}

void ErrorManager::Set(ErrorManager* inManager) noexcept {
    S_managerP.store(inManager, std::memory_order_release);
}

ErrorManager* ErrorManager::Exchange(ErrorManager* inManager) noexcept {
    return S_managerP.exchange(inManager, std::memory_order_acq_rel);
}

ErrorManager* ErrorManager::Get() {
    ErrorManager* const manager = S_managerP.load(std::memory_order_acquire);
    if (manager == nullptr) {
        throw no_error_manager();
    }
    return manager;
}

bool ErrorManager::WillBeReplayed(bool inDeferrable) const noexcept {
    return inDeferrable && IsErrorReportingDeferred() && !Replay::IsInProgress();
}

void ErrorManager::ThrowErrorDispatch(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                                      std::int32_t inCode, bool inDeferrable,
                                      ReplacementValue const& inFirst,
                                      ReplacementValue const& inSecond,
                                      ReplacementValue const& inThird,
                                      ReplacementValue const& inFourth) const {
    if (inDeferrable && !mReporters.empty()) {
        mReporters.front()->SetLastError(inLevel, inKey, inModule, inCode, inFirst, inSecond,
                                         inThird, inFourth);
    }
    Replay const none(false); // an error that a manager raises while it shows a replay
    // Dispatching changes nothing of the base; the host's operation may change the host's state.
    const_cast<ErrorManager*>(this)->ThrowErrorImpl(inLevel, inKey, inModule, inCode, inDeferrable,
                                                    inFirst, inSecond, inThird, inFourth);
}

void ErrorManager::AddDeferredErrorReporter(DeferredErrorReporter* inReporter) {
    if (inReporter != nullptr) {
        mReporters.push_front(inReporter);
        try {
            inReporter->mEntered.push_back(this);
        } catch (...) {
            mReporters.pop_front();
            throw;
        }
    }
}

void ErrorManager::RemoveDeferredErrorReporter(DeferredErrorReporter* inReporter) noexcept {
    auto const found = std::find(mReporters.begin(), mReporters.end(), inReporter);
    if (found != mReporters.end()) {
        mReporters.erase(found);
        auto& entered = inReporter->mEntered;
        entered.erase(std::find(entered.begin(), entered.end(), this));
    }
}

} // namespace brindle::config
