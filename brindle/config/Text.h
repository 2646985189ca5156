#pragma once

#include <brindle/Export.h>
#include <brindle/config/ReplacementValue.h>
#include <brindle/utility/TextTypes.h>

#include <initializer_list>

namespace brindle::config {

/// The text of a localisation literal in the host's language, with values in the places of its
/// placeholders:
///
///     label = Text("$$$/viewer/Copied=Copied ^1 ^1{one=file|other=files} to '^2'.",
///                  {count, folder});
///
/// Without a localiser the text is what stands behind the first "=". A literal that does not have
/// the form "$$$/path=default text" is itself the text, and null is an empty one.
///
/// `^1` to `^9` and `@0` to `@9` stand for the values in their order. Integers appear as decimal
/// digits, doubles in the shortest form that reads back as the same value, whatever the locale is.
/// A placeholder without a value stays as it is, and what a value contains is not expanded again.
///
/// `^1{one=file|few=…|other=files}` chooses by the value: the part that is named like the number
/// ("0=no files"), else the one that is named like the number's plural category in the language of
/// the text (`PluralCategory`), else "other", else the last one. Placeholders in the part are
/// expanded. `^^`, `@@`, `^{`, `^|` and `^}` stand for the second character.
///
/// Throws what the localiser and the allocator throw. Any thread may call.
[[nodiscard]] BRN_API UTF16String Text(char const* inLiteral,
                                       std::initializer_list<ReplacementValue> inValues = {});

/// A value as `Text` shows it.
[[nodiscard]] BRN_API UTF16String TextOf(ReplacementValue const& inValue);

} // namespace brindle::config
