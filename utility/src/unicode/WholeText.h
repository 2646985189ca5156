#pragma once

#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>

namespace brindle::utility {

/// What was replaced by U+FFFD.
struct Replacements {
    std::size_t count = 0;
    std::size_t first = 0; ///< in units of the result; meaningless if there are none
};

/// Decodes UTF-8 to its end; each maximal part of a malformed sequence becomes U+FFFD.
UTF16String DecodeWholeUTF8(std::uint8_t const* inText, std::size_t inCount,
                            Replacements& outReplacements);

/// Replaces surrogates without their partner by U+FFFD.
void ReplaceLoneSurrogates(UTF16String& ioText, Replacements& outReplacements);

} // namespace brindle::utility
