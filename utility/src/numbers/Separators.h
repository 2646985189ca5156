#pragma once

#include "platform/Locale.h"

namespace brindle::utility {

/// The user's separators, which the platform is asked for at the first call. They differ: where the
/// locale has a decimal comma and no separator of groups, that is a no-break space. Any thread may
/// call.
platform::NumberSeparators UserSeparators();

/// Replaces them, for tests, which cannot choose the user's locale. Two zeros make the next call
/// ask the platform again.
void SetUserSeparators(platform::NumberSeparators inSeparators) noexcept;

} // namespace brindle::utility
