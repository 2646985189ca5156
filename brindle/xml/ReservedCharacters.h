#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

// The five characters that XML reserves, and the references that stand for them in text: &lt; &gt;
// &amp; &apos; &quot;. Numeric references are neither written nor read, and no other character is
// touched. The functions are pure, for any thread; only the allocator can throw. Arguments may be
// one and the same object.

namespace brindle::xml::utils {

/// Appends the text to `ioText`, each reserved character as its reference.
BRN_API void EncodeReservedCharacters(UTF8String const& inText, UTF8String& ioText);

/// Puts the text, each reserved character as its reference, in the place of `outText`'s. The text
/// goes through UTF-8, so it ends where `utility::UTF16to8` ends it.
BRN_API void EncodeReservedCharacters(UTF16String const& inText, UTF16String& outText);

/// Puts the text, each reference as its character, in the place of `outText`'s. What a reference
/// became is not read again: "&amp;lt;" gives "&lt;".
BRN_API void DecodeReservedCharacters(UTF16String const& inText, UTF16String& outText);

/// The same by way of UTF-16: the text ends where the conversions end it.
BRN_API void DecodeReservedCharacters(UTF8String const& inText, UTF8String& outText);

} // namespace brindle::xml::utils
