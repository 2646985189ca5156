#pragma once

#include "platform/Locale.h"

namespace brindle::utility {

/// The user's separators, from the platform at the first call. Any thread may call.
platform::NumberSeparators UserSeparators();

/// Puts others in their place: for tests, which have no say in the user's locale. Two zeros make
/// the next call read the user's again.
void SetUserSeparators(platform::NumberSeparators inSeparators) noexcept;

} // namespace brindle::utility
