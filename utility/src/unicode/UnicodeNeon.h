#pragma once

#include "utility/src/unicode/UnicodeKernels.h"
#include "utility/src/unicode/UnicodeShuffles.h"

#include <cstddef>
#include <cstdint>

// Every processor of this architecture has these instructions.
#if defined(__AARCH64EL__)
#define BRN_NEON 1
#include <arm_neon.h>

namespace brindle::utility::impl::neon {

UTF16Extent MeasureUTF16(std::uint16_t const* inText, std::size_t inCount) noexcept;
std::size_t EncodeUTF8(std::uint16_t const* inText, std::size_t inCount,
                       std::uint8_t* outBytes) noexcept;
std::size_t CountUTF16(std::uint8_t const* inText, std::size_t inCount) noexcept;
UnicodeProgress DecodeUTF8(std::uint8_t const* inText, std::size_t inCount,
                           std::uint16_t* outUnits) noexcept;

inline std::size_t CountBits(unsigned inBits) noexcept {
    return static_cast<std::size_t>(__builtin_popcount(inBits));
}

/// Stores the bytes of `inValue` in the order that `inShuffle` gives.
inline void StoreShuffled(void* outTo, uint8x16_t inValue, ByteShuffle const& inShuffle) noexcept {
    vst1q_u8(static_cast<std::uint8_t*>(outTo), vqtbl1q_u8(inValue, vld1q_u8(inShuffle.bytes)));
}

} // namespace brindle::utility::impl::neon

#else
#define BRN_NEON 0
#endif
