#pragma once

#include "utility/src/unicode/UnicodeKernels.h"

#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>

/// The conversion of strings with a given set of kernels. The public conversions use the best set;
/// tests and benchmarks use each.
namespace brindle::utility::impl {

/// The result of `UTF16to8`.
UTF8String EncodeWith(UnicodeKernels const& inKernels, std::uint16_t const* inText,
                      std::size_t inCount);

/// The result of `UTF8to16`.
UTF16String DecodeWith(UnicodeKernels const& inKernels, std::uint8_t const* inText,
                       std::size_t inCount);

/// Assigns the result of `UTF8to16` to `outText`, and reuses its storage if that is large enough.
void AssignWith(UnicodeKernels const& inKernels, std::uint8_t const* inText, std::size_t inCount,
                UTF16String& outText);

/// Appends the result of `UTF8to16`, and returns how many bytes are well-formed.
std::size_t AppendWith(UnicodeKernels const& inKernels, std::uint8_t const* inText,
                       std::size_t inCount, UTF16String& ioText);

} // namespace brindle::utility::impl
