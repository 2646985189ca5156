#pragma once

#include <brindle/utility/TextTypes.h>

#include <string>

namespace brindle::platform {

/// Text in the system's 8-bit code page, which is UTF-8, to UTF-16. A byte that is not part of
/// valid UTF-8 becomes U+DC00 plus the byte, so that nothing is lost. A NUL is text like any other.
UTF16String FromCodePage(std::string const& inText);

/// The inverse of `FromCodePage`. A lone surrogate that stands for no byte takes its three-byte
/// form.
std::string ToCodePage(UTF16String const& inText);

} // namespace brindle::platform
