#pragma once

#include <brindle/utility/TextTypes.h>

namespace brindle::platform {

/// Orders two texts as the user of the system sorts text: below 0, 0 or above 0. Any thread may
/// call. The setting is read at the first call.
int CompareText(UTF16String const& inLHS, UTF16String const& inRHS);

} // namespace brindle::platform
