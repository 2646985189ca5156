#pragma once

#include <brindle/config/PluralLocalizer.h>

namespace brindle::config {

/// Whether a text has the form "$$$/path=default text".
bool IsLiteral(char const* inText) noexcept;

/// A literal in the host's language, or its default text in English; a text that is no literal
/// stays as it is.
LocalizedText Localized(char const* inText);

/// The text with U+FFFD for control characters, and for surrogates without a partner, which stand
/// for bytes of names that are not text.
UTF16String Printable(UTF16String inText);

} // namespace brindle::config
