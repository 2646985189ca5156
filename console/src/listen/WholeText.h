#pragma once

#include <brindle/utility/TextTypes.h>

#include <optional>
#include <string>

/// Text on its way through a connection, which keeps every NUL.
namespace brindle::console {

std::string ToBytes(UTF16String const& inText);

/// Nothing if the bytes are not UTF-8.
std::optional<UTF16String> FromBytes(std::string const& inBytes);

} // namespace brindle::console
