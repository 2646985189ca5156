#pragma once

#include "utility/src/unicode/UnicodeKernels.h"

#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>

namespace brindle::utility::impl {

/// The conversion of whole strings by a given set of kernels: what `UTF16to8` and `UTF8to16` do
/// with the best set, so that tests and benchmarks can do it with each.
UTF8String EncodeWith(UnicodeKernels const& inKernels, std::uint16_t const* inText,
                      std::size_t inCount);
UTF16String DecodeWith(UnicodeKernels const& inKernels, std::uint8_t const* inText,
                       std::size_t inCount);

} // namespace brindle::utility::impl
