#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstddef>

namespace brindle::utility::impl {

/// Assigns the result of `UTF8to16` to `outText`, and reuses its storage if that is large enough.
/// The bytes are not those of `outText` itself.
void AssignUTF8to16(char const* inText, std::size_t inCount, UTF16String& outText);

/// Appends the result of `UTF8to16`, and returns how many bytes are well-formed.
std::size_t AppendUTF8to16(std::uint8_t const* inText, std::size_t inCount, UTF16String& ioText);

} // namespace brindle::utility::impl
