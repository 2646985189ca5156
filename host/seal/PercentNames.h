#pragma once

#include <brindle/utility/TextTypes.h>

#include <string>

namespace brindle::host {

/// Encodes a name of any bytes as readable text that an XML document can hold: each byte of control
/// characters, of invalid UTF-8, of U+FFFE and U+FFFF, and "%" itself becomes "%" and two capital
/// hexadecimal digits.
UTF8String PercentEncoded(std::string const& inName);

/// Decodes a name. Returns false, and leaves `outName` unspecified, for a text that
/// `PercentEncoded` never produces.
[[nodiscard]] bool PercentDecode(UTF8String const& inText, std::string& outName);

} // namespace brindle::host
