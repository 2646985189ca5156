#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <locale>

/// The two standard locales of the library. Each is made at its first use, once, whatever thread
/// comes first, and lives until the library is unloaded.
namespace brindle::Locale {

/// The user's locale, as the environment tells at the first call; the "C" locale if the system does
/// not have it.
BRN_API std::locale const& Native();

/// The classic locale, in which program logic reads and writes numbers.
BRN_API std::locale const& Default();

/// The number that a text shown to a user begins with, read once in `Native` and once in the
/// program's global locale. Of two readings with the same sign the one of the greater magnitude
/// counts, as it went on where a comma stopped the other; otherwise the second does. 0.0 for what
/// cannot be read, and never a failure; only the allocator can throw.
BRN_API double GetValueFromDisplayString(UTF16String const& inText);

} // namespace brindle::Locale
