#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstddef>

namespace brindle::utility::impl {

/// Assigns the result of `UTF8to16` to `outText`, and reuses its storage if that is large enough.
/// The bytes are not those of `outText` itself.
void AssignUTF8to16(char const* inText, std::size_t inCount, UTF16String& outText);

} // namespace brindle::utility::impl
