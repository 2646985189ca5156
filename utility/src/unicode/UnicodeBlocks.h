#pragma once

#include "utility/src/unicode/UnicodeKernels.h"

#include <cstddef>
#include <cstdint>

/// What the kernels share that decode whole blocks and leave the rest to the portable kernel.
namespace brindle::utility::impl {

/// True if a sequence that starts in the three bytes before `inText` continues at `inText`.
inline bool IsInsideSequence(std::uint8_t const* inText) noexcept {
    return inText[-1] >= 0xC0 || inText[-2] >= 0xE0 || inText[-3] >= 0xF0;
}

/// Decodes what is left behind the whole blocks that are `inDone`, of which the last may end inside
/// a sequence, and returns the progress altogether. Of a sequence of four bytes of which three are
/// in the blocks, the first unit is written already.
UnicodeProgress FinishDecoding(std::uint8_t const* inText, std::size_t inCount,
                               UnicodeProgress inDone, std::uint16_t* outUnits) noexcept;

} // namespace brindle::utility::impl
