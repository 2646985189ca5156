#pragma once

#include <brindle/utility/TextTypes.h>

#include <string>

namespace brindle::host {

/// A name of any bytes as text that every XML document holds and that a person can read: control
/// characters, what is not UTF-8, U+FFFE, U+FFFF and "%" itself have each byte written as "%" and
/// two capital hexadecimal digits.
UTF8String PercentEncoded(std::string const& inName);

/// Gives the name that the text stands for. False, with `outName` undefined, if the text is not
/// what `PercentEncoded` makes of any name.
bool PercentDecode(UTF8String const& inText, std::string& outName);

} // namespace brindle::host
