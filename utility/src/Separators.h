#pragma once

#include "platform/Locale.h"

namespace brindle::utility {

/// The user's separators, from the platform at the first call. Any thread may call.
platform::NumberSeparators UserSeparators();

/// Puts others in their place, which no reading replaces: for tests, which have no say in the
/// user's locale. The decimal separator is not 0.
void SetUserSeparators(platform::NumberSeparators inSeparators) noexcept;

} // namespace brindle::utility
