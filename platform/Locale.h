#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstdint>

namespace brindle::platform {

/// Orders two texts as the user of the system sorts text: below 0, 0 or above 0. Any thread may
/// call. The setting is read at the first call.
int CompareText(UTF16String const& inLHS, UTF16String const& inRHS);

/// What stands before the fraction of a number, and between groups of its digits.
struct NumberSeparators {
    std::uint16_t decimal = u'.';
    std::uint16_t thousands = u',';
};

/// The separators of the user's locale, the first unit of each; the defaults of the structure for
/// one that the locale does not have. Any thread may call. The setting is read at the first call.
NumberSeparators UserNumberSeparators();

} // namespace brindle::platform
