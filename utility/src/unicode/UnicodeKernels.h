#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The inner loops of the text conversions. All sets of kernels give identical results; they differ
/// in the instructions that they need.
namespace brindle::utility::impl {

/// The part of a UTF-16 text that is converted, and the size of its conversion.
struct UTF16Extent {
    std::size_t units; ///< the number of units before the first NUL
    std::size_t bytes; ///< their exact length in UTF-8
};

/// How far a conversion got, in elements of its input and of its output.
struct UnicodeProgress {
    std::size_t consumed;
    std::size_t produced;
};

/// No kernel reads outside `[inText, inText + inCount)`. A kernel may write garbage to up to
/// `kSlack` elements behind its output.
struct UnicodeKernels {
    static constexpr std::size_t kSlack = 64;

    char const* name; ///< for tests and benchmarks

    UTF16Extent (*MeasureUTF16)(std::uint16_t const* inText, std::size_t inCount);

    /// Encodes all `inCount` units, NUL like any other, and returns the number of bytes. `outBytes`
    /// has room for three bytes for each unit and for the slack.
    std::size_t (*EncodeUTF8)(std::uint16_t const* inText, std::size_t inCount,
                              std::uint8_t* outBytes);

    /// The number of units that the bytes decode to if all are well-formed, and an upper bound
    /// otherwise.
    std::size_t (*CountUTF16)(std::uint8_t const* inText, std::size_t inCount);

    /// Decodes up to the first malformed or incomplete sequence. `outUnits` has room for one unit
    /// for each byte and for the slack.
    UnicodeProgress (*DecodeUTF8)(std::uint8_t const* inText, std::size_t inCount,
                                  std::uint16_t* outUnits);
};

/// Portable C++, for every processor.
extern UnicodeKernels const kPortableUnicodeKernels;

/// Kernels for AVX2, or null if the processor does not have it.
UnicodeKernels const* AVX2UnicodeKernels() noexcept;

/// Kernels for AVX-512 with VBMI2, or null if the processor or the system does not support it.
UnicodeKernels const* AVX512UnicodeKernels() noexcept;

/// Kernels for NEON, or null on processors of another architecture than 64-bit ARM.
UnicodeKernels const* NEONUnicodeKernels() noexcept;

/// All sets, the best one first. Those that this processor cannot run are null.
std::array<UnicodeKernels const*, 4> AllUnicodeKernels() noexcept;

/// The set that the conversions use: the first that is not null.
UnicodeKernels const& BestUnicodeKernels() noexcept;

} // namespace brindle::utility::impl
