#pragma once

#include <brindle/Export.h>

#include <locale>

/// The two standard locales of the library. Each is made at its first use, once, whatever thread
/// comes first, and lives until the library is unloaded.
namespace brindle::Locale {

/// The user's locale, as the environment tells at the first call; the "C" locale if the system does
/// not have it.
BRN_API std::locale const& Native();

/// The classic locale, in which program logic reads and writes numbers.
BRN_API std::locale const& Default();

} // namespace brindle::Locale
