#pragma once

#include <brindle/config/ErrorManager.h>
#include <brindle/config/Localizer.h>

namespace brindle::host {

/// What a host does with the library before anything else, on one thread. Both objects outlive
/// `StopLibrary`.
void StartLibrary(config::ErrorManager& inErrorManager, config::Localizer& inLocalizer);

/// What a host does at its end, when no other thread uses the library any more. The library can be
/// started again afterwards. Failures are written to standard error.
void StopLibrary() noexcept;

} // namespace brindle::host
