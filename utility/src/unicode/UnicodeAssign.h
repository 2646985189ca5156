#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstddef>

namespace brindle::utility::impl {

/// Puts what `UTF8to16` gives in the place of `outText`'s text, and in its storage if that is large
/// enough. The bytes are not those of `outText` itself.
void AssignUTF8to16(char const* inText, std::size_t inCount, UTF16String& outText);

} // namespace brindle::utility::impl
