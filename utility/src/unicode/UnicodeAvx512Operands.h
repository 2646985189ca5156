#pragma once

#include <cstdint>

#if defined(__x86_64__)

/// What the kernels for AVX-512 compute with. The values are in a source of their own, so that the
/// kernels load them: where GCC knows a value, it moves it from a general register to a vector in
/// every round of a loop, and these moves take up to a third of the time.
namespace brindle::utility::impl::avx512 {

/// An operand is the pattern of its bits that is repeated throughout a vector.
using Pattern32 = std::uint32_t;
using Pattern64 = std::uint64_t;

/// The 8-byte parts of a vector in an order that interleaving the lower or the upper halves of its
/// lanes undoes.
using LaneOrder = std::uint64_t[8];

struct alignas(64) DecodeOperands {
    LaneOrder interleaved = {0, 4, 1, 5, 2, 6, 3, 7};

    // Bytes.
    Pattern32 lead2 = 0xC0C0C0C0;
    Pattern32 leastLead2 = 0xC2C2C2C2; ///< C0 and C1 would be leads of overlong sequences
    Pattern32 lead3 = 0xE0E0E0E0;
    Pattern32 lead4 = 0xF0F0F0F0;
    Pattern32 lowSixBits = 0x3F3F3F3F;
    Pattern32 lowFourBits = 0x0F0F0F0F;
    Pattern32 leastHigh3 = 0x08080808;   ///< the upper byte of U+0800
    Pattern32 leastHigh4 = 0x04040404;   ///< the upper byte of U+10000 >> 6
    Pattern32 rangeOfHigh4 = 0x3F3F3F3F; ///< from there to that of U+10FFFF >> 6

    // Units.
    Pattern32 firstOfPair = 0xD7C0D7C0; ///< what makes of a code point >> 10 a high surrogate
    Pattern32 secondOfPair = 0xDC00DC00;
    Pattern32 lowTenBits = 0x03FF03FF;
};

struct alignas(64) EncodeOperands {
    LaneOrder interleaved = {0, 4, 1, 5, 2, 6, 3, 7};
    std::uint8_t lowBytes[64] = {}; ///< the places of the lower bytes of the units of two vectors
    std::uint8_t threeBytes[128] = {}; ///< two and one byte of each unit, alternating

    // Units.
    Pattern32 notASCII = 0xFF80FF80;
    Pattern32 notTwoBytes = 0xF800F800;
    Pattern32 kind = 0xFC00FC00; ///< the bits that make a unit a high or a low surrogate
    Pattern32 high = 0xD800D800;
    Pattern32 low = 0xDC00DC00;
    Pattern32 lowTenBits = 0x03FF03FF;
    Pattern32 planeOne = 0x00400040; ///< 0x10000 >> 10

    // Pairs of bytes, which hold the bits of a unit from these on. A mask keeps some of them, and
    // the bits that make a byte a lead or a trailing byte are added.
    Pattern64 bits6And0 = 0x3036202610160006;
    Pattern64 bits12And6 = 0x363C262C161C060C;
    Pattern64 bits8And2 = 0x3238222812180208;
    Pattern32 leadAndTrailing2 = 0x80C080C0;
    Pattern32 leadAndTrailing3 = 0x80E080E0;
    Pattern32 leadAndTrailing4 = 0x80F080F0;
    Pattern32 leadAndTrailing2Mask = 0x3F1F3F1F;
    Pattern32 leadAndTrailing3Mask = 0x3F0F3F0F;
    Pattern32 leadAndTrailing4Mask = 0x3F073F07;
    Pattern32 trailingTwo = 0x80808080;
    Pattern32 trailingMask = 0x3F3F3F3F;
    Pattern32 lead3 = 0x00E000E0;
    Pattern32 trailingToLead2 = 0x00400040; ///< what makes the first of two trailing bytes a lead
    Pattern32 carriedBits = 0x00300030;     ///< of the third byte of four, from the unit before

    // A byte of a vector that equals the one in its place here is not part of the text: 0 where a
    // sequence may have no byte, and 0xFF, which is in no sequence, where it always has one.
    Pattern32 absentOfTwo = 0x00FF00FF;
    Pattern32 absentOfThree = 0xFF000000;
};

extern DecodeOperands const kDecode;
extern EncodeOperands const kEncode;

} // namespace brindle::utility::impl::avx512

#endif
