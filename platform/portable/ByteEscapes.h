#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <string>

namespace brindle::platform {

/// What the bytes are: text as it stands, or a path, whose separators are exchanged on the way and
/// whose names may hold a backslash.
enum class ByteForm { kText, kPath };

/// Appends UTF-8 bytes as UTF-16. A byte that is not part of a valid sequence becomes U+DC00 plus
/// the byte. In a path "/" becomes "\", "\" becomes U+F05C, and a genuine U+F05C goes by its bytes.
void AppendText(UTF16String& ioText, char const* inBytes, std::size_t inCount, ByteForm inForm);

/// The inverse of `AppendText` for every text that it makes. A lone surrogate that stands for no
/// byte takes its three-byte form. No byte comes out 0 or "/" but for the unit that says so.
void AppendBytes(std::string& ioBytes, std::uint16_t const* inUnits, std::size_t inCount,
                 ByteForm inForm);

} // namespace brindle::platform
