#include <brindle/config/DeferredErrorReporter.h>

#include "config/src/Replay.h"

#include <brindle/config/ErrorManager.h>

namespace brindle::config {

DeferredErrorReporter::DeferredErrorReporter(bool inReportErrorWhenFinished)
    : mReportErrorWhenFinished(inReportErrorWhenFinished) {
    ErrorManager::Get()->AddDeferredErrorReporter(this);
}

DeferredErrorReporter::DeferredErrorReporter(DeferredErrorReporter const& inOther)
    : RefCountedObject(inOther), mReportErrorWhenFinished(inOther.mReportErrorWhenFinished),
      mLast(inOther.mLast), mPendingCount(inOther.mPendingCount) {}

DeferredErrorReporter::~DeferredErrorReporter() {
    while (!mEntered.empty()) {
        mEntered.back()->RemoveDeferredErrorReporter(this);
    }
}

void DeferredErrorReporter::Finish() {
    if (!mReportErrorWhenFinished || mPendingCount < 1) {
        return;
    }
    // The manager may raise the next error or drop this reporter, so a copy is replayed.
    Error const last = mLast;
    mPendingCount = 0;
    ErrorManager* const manager = ErrorManager::Get();
    Replay const replay(true);
    manager->ThrowErrorImpl(last.level, last.key.c_str(), last.module, last.code, true, last.first,
                            last.second, last.third, last.fourth);
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
    mLast = {inLevel, inKey, inModule, inCode, inFirst, inSecond, inThird, inFourth};
}

} // namespace brindle::config
