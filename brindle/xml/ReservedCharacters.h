#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

/// The five characters that XML reserves, and the references that stand for them in a text: &lt;
/// &gt; &amp; &apos; &quot;. Numeric references are neither written nor read, and no other
/// character is changed. Any thread may call the functions, which throw only `std::bad_alloc`.
/// Input and output may be the same object.
namespace brindle::xml::utils {

/// Appends the text to `ioText`, with the reserved characters replaced by references.
BRN_API void EncodeReservedCharacters(UTF8String const& inText, UTF8String& ioText);

/// Replaces `outText` by the text, with the reserved characters replaced by references. The text
/// passes through UTF-8, so it ends where `utility::UTF16to8` ends it.
BRN_API void EncodeReservedCharacters(UTF16String const& inText, UTF16String& outText);

/// Replaces `outText` by the text, with each reference replaced by its character. References are
/// decoded once: "&amp;lt;" gives "&lt;".
BRN_API void DecodeReservedCharacters(UTF16String const& inText, UTF16String& outText);

/// The same by way of UTF-16; the text ends where the conversions end it.
BRN_API void DecodeReservedCharacters(UTF8String const& inText, UTF8String& outText);

} // namespace brindle::xml::utils
