#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::platform {

/// Compares two texts by the user's collation: the result is below 0, 0 or above 0. Any thread may
/// call. The user's setting is read at the first call.
[[nodiscard]] int CompareText(UTF16String const& inLHS, UTF16String const& inRHS);

/// What separates the fraction of a number, and the groups of its digits.
struct NumberSeparators {
    std::uint16_t decimal = u'.';
    std::uint16_t thousands = u',';
};

/// The first unit of each separator of the user's locale, or the structure's default for one that
/// the locale does not have. Reads the user's setting at each call. Any thread may call.
[[nodiscard]] NumberSeparators UserNumberSeparators();

/// The languages that the user reads, preferred ones first, as tags such as "pt-BR"; none if the
/// user has chosen none. Reads the user's setting at each call. Any thread may call unless another
/// one changes the environment.
[[nodiscard]] std::vector<std::string> UserLanguages();

} // namespace brindle::platform
