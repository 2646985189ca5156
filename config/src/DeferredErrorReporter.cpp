#include <brindle/config/DeferredErrorReporter.h>
#include <brindle/config/ErrorManager.h>

namespace brindle::config {

DeferredErrorReporter::DeferredErrorReporter(bool inReportErrorWhenFinished)
    : mReportErrorWhenFinished(inReportErrorWhenFinished) {
    ErrorManager::Get()->AddDeferredErrorReporter(this);
}

DeferredErrorReporter::~DeferredErrorReporter() {
    // A host may have uninstalled its manager before the last reporter is gone.
    if (ErrorManager* const manager = ErrorManager::S_managerP.load(std::memory_order_acquire)) {
        manager->RemoveDeferredErrorReporter(this);
    }
}

void DeferredErrorReporter::Finish() {
    if (!mReportErrorWhenFinished || mPendingCount < 1) {
        return;
    }
    // The manager may raise the next error or drop this reporter, so a copy is replayed.
    boost::intrusive_ptr<DeferredErrorReporter const> const last = new DeferredErrorReporter(*this);
    mPendingCount = 0;
    ErrorManager::Get()->ThrowErrorImpl(last->mLastLevel, last->mLastKey.c_str(), last->mLastModule,
                                        last->mLastCode, true, last->mFirst, last->mSecond,
                                        last->mThird, last->mFourth);
}

void DeferredErrorReporter::SetLastError(ErrorLevel inLevel, char const* inKey,
                                         std::uint32_t inModule, std::int32_t inCode,
                                         ReplacementValue const& inFirst,
                                         ReplacementValue const& inSecond,
                                         ReplacementValue const& inThird,
                                         ReplacementValue const& inFourth) {
    if (mPendingCount < INT32_MAX) {
        ++mPendingCount;
    }
    mLastLevel = inLevel;
    mLastKey = inKey;
    mLastModule = inModule;
    mLastCode = inCode;
    mFirst = inFirst;
    mSecond = inSecond;
    mThird = inThird;
    mFourth = inFourth;
}

} // namespace brindle::config
