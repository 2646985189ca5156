#pragma once

#include <brindle/Export.h>
#include <brindle/config/ErrorCodes.h>
#include <brindle/utility/RefCountedObject.h>

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::config {

class ErrorManager;

/// Records the last deferrable error that is raised during its life, and reports that one when
/// `Finish` is called, so that the user hears once of a run of failures. Of several reporters the
/// newest records.
///
/// The error manager is asked to show each error as it is raised, too; it asks `WillBeReplayed` and
/// waits for the replay:
///
///     auto const reporter = ErrorManager::Get()->NewDeferredErrorReporter(true);
///     for (auto const& path : paths) { LoadPropList(path, list, false); }
///     reporter->Finish();
///
/// Held by `boost::intrusive_ptr`. The destructor drops an error that was not replayed.
class BRN_API DeferredErrorReporter : public utility::RefCountedObject {
public:
    /// Enters the list of the installed manager. Throws `std::logic_error` if there is none.
    explicit DeferredErrorReporter(bool inReportErrorWhenFinished = true);
    /// Copies what has been recorded. The copy is in no list and records nothing.
    DeferredErrorReporter(DeferredErrorReporter const& inOther);
    DeferredErrorReporter& operator=(DeferredErrorReporter const&) = delete;
    /// Leaves the list that it entered, also if another manager is installed by now.
    ~DeferredErrorReporter() override;

    /// Whether `Finish` reports.
    bool GetReportErrorWhenFinished() const noexcept { return mReportErrorWhenFinished; }
    void SetReportErrorWhenFinished(bool inReport) noexcept { mReportErrorWhenFinished = inReport; }

    /// Hands the recorded error to the installed manager's `ThrowErrorImpl` and forgets it; no
    /// reporter records this. Does nothing if there is no error or the flag is clear. Throws what
    /// the manager throws, and `std::logic_error` if an error is due and no manager is installed.
    virtual void Finish();

private:
    friend class ErrorManager;

    void SetLastError(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                      std::int32_t inCode, ReplacementValue const& inFirst,
                      ReplacementValue const& inSecond, ReplacementValue const& inThird,
                      ReplacementValue const& inFourth);

    struct Error {
        ErrorLevel level = static_cast<ErrorLevel>(-1); // none recorded
        std::string key;
        std::uint32_t module = kErrorModule_None;
        std::int32_t code = 0;
        ReplacementValue first;
        ReplacementValue second;
        ReplacementValue third;
        ReplacementValue fourth;
    };

    bool mReportErrorWhenFinished;
    Error mLast;
    std::int32_t mPendingCount = 0;
    /// The managers whose lists this reporter is in, each as often as its list has it. Reporter and
    /// manager strike each other off when they are destroyed, so that either may go first.
    std::vector<ErrorManager*> mEntered;
};

} // namespace brindle::config
