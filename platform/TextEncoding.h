#pragma once

#include <brindle/utility/TextTypes.h>

#include <string>

namespace brindle::platform {

/// Converts text in the system's 8-bit code page, which is UTF-8, to UTF-16. A byte that is not
/// part of valid UTF-8 becomes U+DC00 plus the byte, so that nothing is lost. A NUL has no special
/// meaning.
UTF16String FromCodePage(std::string const& inText);

/// The inverse of `FromCodePage`. A lone surrogate that stands for no byte is written in its
/// three-byte form.
std::string ToCodePage(UTF16String const& inText);

} // namespace brindle::platform
