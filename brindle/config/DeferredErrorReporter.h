#pragma once

#include <brindle/Export.h>
#include <brindle/config/Errors.h>
#include <brindle/utility/RefCountedObject.h>

#include <cstdint>
#include <string>

namespace brindle::config {

/// Records the last deferrable error while it lives and replays it on request, so that a run of
/// failures is reported once. A reporter shadows those made before it.
///
/// Held by `boost::intrusive_ptr`. Destruction drops an error that was not replayed.
class BRN_API DeferredErrorReporter : public utility::RefCountedObject {
public:
    /// Enters the installed manager's list. Throws `std::logic_error` if no manager is installed.
    explicit DeferredErrorReporter(bool inReportErrorWhenFinished = true);
    /// Copies what is recorded; the copy is in no list.
    DeferredErrorReporter(DeferredErrorReporter const&) = default;
    DeferredErrorReporter& operator=(DeferredErrorReporter const&) = delete;
    ~DeferredErrorReporter() override;

    bool GetReportErrorWhenFinished() const noexcept { return mReportErrorWhenFinished; }
    void SetReportErrorWhenFinished(bool inReport) noexcept { mReportErrorWhenFinished = inReport; }

    /// Replays the last error to the installed manager, once, if one was recorded and the flag is
    /// set; no reporter records the replay. Otherwise nothing changes.
    virtual void Finish();

private:
    friend class ErrorManager;

    void SetLastError(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                      std::int32_t inCode, ReplacementValue const& inFirst,
                      ReplacementValue const& inSecond, ReplacementValue const& inThird,
                      ReplacementValue const& inFourth);

    bool mReportErrorWhenFinished;
    ErrorLevel mLastLevel = static_cast<ErrorLevel>(-1); // none stored
    std::string mLastKey;
    std::uint32_t mLastModule = kErrorModule_None;
    std::int32_t mLastCode = 0;
    ReplacementValue mFirst;
    ReplacementValue mSecond;
    ReplacementValue mThird;
    ReplacementValue mFourth;
    std::int32_t mPendingCount = 0;
};

} // namespace brindle::config
