#pragma once

#include <brindle/config/ErrorManager.h>
#include <brindle/config/Localizer.h>

namespace brindle::config {

/// Installs an error manager or a localiser for a scope, and at its end installs what was there
/// before, or none:
///
///     PrintingErrorManager errors("offload");
///     ScopedErrorManager const installed(errors);
///
/// Other threads use the installed object meanwhile, so it has to exist until they have finished
/// with it. Guards that overlap have to be destroyed in reverse order, as those of nested scopes
/// are.
template <typename Manager>
class ScopedInstallation {
public:
    /// Takes no ownership.
    explicit ScopedInstallation(Manager& ioManager) noexcept
        : mFormer(Manager::Exchange(&ioManager)) {}
    ScopedInstallation(ScopedInstallation const&) = delete;
    ScopedInstallation& operator=(ScopedInstallation const&) = delete;
    ~ScopedInstallation() { Manager::Set(mFormer); }

    /// What was installed before; null if there was none.
    [[nodiscard]] Manager* Former() const noexcept { return mFormer; }

private:
    Manager* const mFormer;
};

/// Installs an error manager for a scope.
using ScopedErrorManager = ScopedInstallation<ErrorManager>;
/// Installs a localiser for a scope.
using ScopedLocalizer = ScopedInstallation<Localizer>;

} // namespace brindle::config
