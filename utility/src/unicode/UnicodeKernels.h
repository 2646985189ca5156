#pragma once

#include <cstddef>
#include <cstdint>

/// The inner loops of the text conversions. Every set of kernels gives the same results, byte for
/// byte and stop for stop; they differ in the instructions they need.
namespace brindle::utility::impl {

/// How much of a UTF-16 text counts, and what it becomes.
struct UTF16Extent {
    std::size_t units; ///< what stands before the first NUL
    std::size_t bytes; ///< the exact length of those units in UTF-8
};

/// How far a conversion came, in elements of its input and of its output.
struct UnicodeProgress {
    std::size_t consumed;
    std::size_t produced;
};

/// No kernel reads outside `[inText, inText + inCount)`. An output may be overwritten up to
/// `kSlack` elements behind what is produced.
struct UnicodeKernels {
    static constexpr std::size_t kSlack = 48;

    UTF16Extent (*MeasureUTF16)(std::uint16_t const* inText, std::size_t inCount);

    /// Encodes all `inCount` units, NUL like any other, and returns the count of bytes. `outBytes`
    /// has room for three bytes a unit and the slack.
    std::size_t (*EncodeUTF8)(std::uint16_t const* inText, std::size_t inCount,
                              std::uint8_t* outBytes);

    /// The count of units that the bytes become: exact if all are well-formed, else an upper bound.
    std::size_t (*CountUTF16)(std::uint8_t const* inText, std::size_t inCount);

    /// Decodes up to the first malformed or incomplete sequence. `outUnits` has room for one unit a
    /// byte and the slack.
    UnicodeProgress (*DecodeUTF8)(std::uint8_t const* inText, std::size_t inCount,
                                  std::uint16_t* outUnits);
};

/// Plain C++ for every processor.
extern UnicodeKernels const kPortableUnicodeKernels;

/// Kernels for AVX2, or null where the processor has none.
UnicodeKernels const* AVX2UnicodeKernels() noexcept;

} // namespace brindle::utility::impl
