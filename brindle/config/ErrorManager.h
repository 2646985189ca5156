#pragma once

#include <brindle/Export.h>
#include <brindle/config/Errors.h>
#include <brindle/utility/BoostFunction.h>

#include <boost/core/noncopyable.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <list>
#include <stdexcept>

namespace brindle::config {

class DeferredErrorReporter;

/// What `ErrorManager::Get` throws if the host has installed no manager. `Describe` says what to
/// install.
class BRN_API no_error_manager : public std::logic_error {
public:
    no_error_manager();
    ~no_error_manager() override;
};

/// What the host derives from to decide what happens to an error: show it, log it, throw.
///
/// The host installs one object with `Set` before it uses the library, and owns it:
///
///     MyErrorManager errors; // derives from ErrorManager and overrides ThrowErrorImpl
///     ErrorManager::Set(&errors);
///
/// `PrintingErrorManager` is one for programs without windows.
///
/// The list of reporters has no lock: a host that defers errors on several threads at once holds a
/// lock of its own around everything that it does with reporters, and around `ThrowError`.
class BRN_API ErrorManager : private boost::noncopyable {
public:
    virtual ~ErrorManager();

    /// A hook for the host; the library never calls it. The base returns false.
    virtual bool PurgeMemory(unsigned int inAmount);
    /// Hooks for the host, which the library never calls either. The base does nothing.
    virtual void IncrementLazilyDisplayErrors();
    virtual void DecrementLazilyDisplayErrors();

    /// Calls the function and returns its result, or 1 if it throws anything at all or is empty.
    /// Never throws.
    [[nodiscard]] virtual std::int32_t
    ExecuteFunctionWithTopLevelExceptionHandler(boost::function<std::int32_t()> inFunction);

    /// A reporter that records deferrable errors until it is destroyed.
    [[nodiscard]] virtual boost::intrusive_ptr<DeferredErrorReporter>
    NewDeferredErrorReporter(bool inReportWhenFinished);

    /// Does with an error what the host wants done; it may throw. Also called for an error that a
    /// reporter has recorded: `WillBeReplayed` tells whether this one comes again.
    virtual void ThrowErrorImpl(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                                std::int32_t inCode, bool inDeferrable,
                                ReplacementValue const& inFirst, ReplacementValue const& inSecond,
                                ReplacementValue const& inThird,
                                ReplacementValue const& inFourth) = 0;

    /// Installs a manager without taking ownership; null uninstalls.
    static void Set(ErrorManager* inManager) noexcept;
    /// The same; returns the former one, or null. ScopedManagers.h does it for a scope.
    static ErrorManager* Exchange(ErrorManager* inManager) noexcept;

    /// The installed manager. Throws `no_error_manager`, a `std::logic_error`, if there is none: a
    /// program then installs one at its start, such as `PrintingErrorManager`.
    static ErrorManager* Get();

    /// Whether there is a reporter, which records an error that may be deferred.
    bool IsErrorReportingDeferred() const noexcept { return !mReporters.empty(); }

    /// For `ThrowErrorImpl`, which passes its own argument: true if a reporter has just recorded
    /// the error, so that it will come again when the reporter finishes; false for the replay
    /// itself.
    bool WillBeReplayed(bool inDeferrable) const noexcept;

    /// Lets the newest reporter record the error if it may be deferred, and calls `ThrowErrorImpl`
    /// in any case.
    void ThrowErrorDispatch(ErrorLevel inLevel, char const* inKey, std::uint32_t inModule,
                            std::int32_t inCode, bool inDeferrable, ReplacementValue const& inFirst,
                            ReplacementValue const& inSecond, ReplacementValue const& inThird,
                            ReplacementValue const& inFourth) const;

protected:
    ErrorManager();

    /// Puts a reporter in front of the others; null is ignored. The list does not own it, and the
    /// reporter leaves it when it is destroyed.
    void AddDeferredErrorReporter(DeferredErrorReporter* inReporter);
    /// Takes a reporter out of the list if it is there.
    void RemoveDeferredErrorReporter(DeferredErrorReporter* inReporter) noexcept;

private:
    friend class DeferredErrorReporter;

    static std::atomic<ErrorManager*> S_managerP;

    std::list<DeferredErrorReporter*> mReporters; // the newest first
};

} // namespace brindle::config
