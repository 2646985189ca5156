#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <string>

namespace brindle::platform {

/// What the bytes are: plain text, or a path, whose separators are converted and whose names may
/// contain a backslash.
enum class ByteForm { kText, kPath };

/// Appends UTF-8 bytes as UTF-16. A byte that is not part of a valid sequence becomes U+DC00 plus
/// the byte. In a path "/" becomes "\", "\" becomes U+F05C, and the bytes of a genuine U+F05C are
/// escaped.
void AppendText(UTF16String& ioText, char const* inBytes, std::size_t inCount, ByteForm inForm);

/// The inverse of `AppendText` for every text that it makes. A lone surrogate that stands for no
/// byte is written in its three-byte form. A byte 0 or "/" results from that very unit only, never
/// from an escape.
void AppendBytes(std::string& ioBytes, std::uint16_t const* inUnits, std::size_t inCount,
                 ByteForm inForm);

} // namespace brindle::platform
