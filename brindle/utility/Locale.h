#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <locale>

/// The two locales that the library works with. Any thread may ask for them, and so may the
/// constructors and destructors of static objects.
namespace brindle::Locale {

/// The user's locale, as the environment names it at the first call. It is the classic locale if
/// the system does not have the one that is named.
BRN_API std::locale const& Native();

/// The classic locale, in which programs read and write numbers that are not for people.
BRN_API std::locale const& Default();

/// The number at the beginning of a text that a user typed or was shown. It is read twice, in
/// `Native` and in the program's global locale. Of two numbers with the same sign the one with the
/// greater magnitude is returned, because the other reading stopped at a separator; otherwise the
/// second one is returned. The result is 0.0 for text that cannot be read; only the allocator can
/// throw.
[[nodiscard]] BRN_API double GetValueFromDisplayString(UTF16String const& inText);

} // namespace brindle::Locale
