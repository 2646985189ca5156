#include "utility/src/unicode/UnicodeNeon.h"

#if BRN_NEON

#include <algorithm>

namespace brindle::utility::impl::neon {
namespace {

constexpr std::size_t kBlock = 8;

// A mask has 0xFFFF for each unit that it says something of, and 0 for the others.

uint16x8_t AreFrom(uint16x8_t inUnits, std::uint16_t inLeast) noexcept {
    return vcgeq_u16(inUnits, vdupq_n_u16(inLeast));
}

uint16x8_t AreOfKind(uint16x8_t inUnits, std::uint16_t inFirst) noexcept {
    return vceqq_u16(vandq_u16(inUnits, vdupq_n_u16(0xFC00)), vdupq_n_u16(inFirst));
}

/// The first units of the surrogate pairs, if `inUnits` and `inBehind` are adjacent.
uint16x8_t ArePairs(uint16x8_t inUnits, uint16x8_t inBehind) noexcept {
    return vandq_u16(AreOfKind(inUnits, 0xD800), AreOfKind(inBehind, 0xDC00));
}

/// Each unit as a sequence of two bytes.
uint16x8_t TwoBytes(uint16x8_t inUnits) noexcept {
    uint16x8_t const first = vandq_u16(vshrq_n_u16(inUnits, 6), vdupq_n_u16(0x003F));
    uint16x8_t const second = vandq_u16(vshlq_n_u16(inUnits, 8), vdupq_n_u16(0x3F00));
    return vorrq_u16(vorrq_u16(first, second), vdupq_n_u16(0x80C0));
}

constexpr std::uint16_t kLaneBits[kBlock] = {1, 2, 4, 8, 16, 32, 64, 128};

/// Encodes 8 units below 0x800.
std::uint8_t* EncodeUpToTwoBytes(uint16x8_t inUnits, std::uint8_t* outBytes) noexcept {
    uint16x8_t const notASCII = AreFrom(inUnits, 0x80);
    uint16x8_t const bytes = vbslq_u16(notASCII, TwoBytes(inUnits), inUnits);
    unsigned const ascii = vaddvq_u16(vbicq_u16(vld1q_u16(kLaneBits), notASCII));
    StoreShuffled(outBytes, vreinterpretq_u8_u16(bytes), kTwoByteShuffles[ascii]);
    return outBytes + 2 * kBlock - CountBits(ascii);
}

/// A block of units and, in the same lanes, the unit before and behind each.
struct Window {
    uint16x8_t units;
    uint16x8_t before;
    uint16x8_t behind;
};

/// The sequences of a block of units, but for the first bytes of those of three.
struct Sequences {
    uint16x8_t lastTwo; ///< the last two bytes; for ASCII the upper byte is the sequence
    uint16x8_t two;     ///< a mask: the sequence has at least two bytes
    uint16x8_t three;   ///< a mask: it has three
};

/// Replaces the two units of each surrogate pair by sequences of two bytes, which together are the
/// four bytes of the pair.
void EncodePairs(Window const& inWindow, Sequences& ioSequences) noexcept {
    uint16x8_t const units = inWindow.units;
    uint16x8_t const isFirst = ArePairs(units, inWindow.behind);
    uint16x8_t const isSecond = ArePairs(inWindow.before, units);

    // The first unit holds the upper bits of the code point, less 0x10000, which adding 0x40
    // restores. They become the first two bytes, but for the lowest two, which go to the third
    // byte.
    uint16x8_t const upper = vaddq_u16(vandq_u16(units, vdupq_n_u16(0x03FF)), vdupq_n_u16(0x0040));
    uint16x8_t const first = vorrq_u16(vorrq_u16(vshrq_n_u16(upper, 8), vdupq_n_u16(0x80F0)),
                                       vandq_u16(vshlq_n_u16(upper, 6), vdupq_n_u16(0x3F00)));
    uint16x8_t const carried = vandq_u16(vshlq_n_u16(inWindow.before, 4), vdupq_n_u16(0x0030));
    uint16x8_t const own = vandq_u16(vshrq_n_u16(units, 6), vdupq_n_u16(0x000F));
    uint16x8_t const last = vandq_u16(vshlq_n_u16(units, 8), vdupq_n_u16(0x3F00));
    uint16x8_t const second =
        vorrq_u16(vorrq_u16(carried, own), vorrq_u16(last, vdupq_n_u16(0x8080)));

    ioSequences.lastTwo = vbslq_u16(isFirst, first, ioSequences.lastTwo);
    ioSequences.lastTwo = vbslq_u16(isSecond, second, ioSequences.lastTwo);
    ioSequences.three = vbicq_u16(ioSequences.three, vorrq_u16(isFirst, isSecond));
}

// Bits of the index of the shuffles, two for each of four lanes.
constexpr std::uint16_t kTwoBits[kBlock] = {1, 4, 16, 64, 1, 4, 16, 64};
constexpr std::uint16_t kThreeBits[kBlock] = {2, 8, 32, 128, 2, 8, 32, 128};

/// Encodes 8 units of any kind. Of a surrogate pair across the border of the block, only the two
/// bytes for the unit in the block are written.
std::uint8_t* EncodeAny(Window const& inWindow, std::uint8_t* outBytes) noexcept {
    uint16x8_t const units = inWindow.units;
    Sequences sequences;
    sequences.two = AreFrom(units, 0x80);
    sequences.three = AreFrom(units, 0x800);
    // In sequences of three bytes the second last byte is a trailing byte and not a lead.
    uint16x8_t const notLead = vandq_u16(sequences.three, vdupq_n_u16(0x0040));
    sequences.lastTwo =
        vbslq_u16(sequences.two, vbicq_u16(TwoBytes(units), notLead), vshlq_n_u16(units, 8));
    uint16x8_t const isSurrogate =
        vceqq_u16(vandq_u16(units, vdupq_n_u16(0xF800)), vdupq_n_u16(0xD800));
    if (vmaxvq_u16(isSurrogate) != 0) {
        EncodePairs(inWindow, sequences);
    }

    uint16x8_t const third = vorrq_u16(vshrq_n_u16(units, 12), vdupq_n_u16(0x00E0));
    uint16x8_t const sizes = vorrq_u16(vandq_u16(sequences.two, vld1q_u16(kTwoBits)),
                                       vandq_u16(sequences.three, vld1q_u16(kThreeBits)));
    unsigned const lowSizes = vaddv_u16(vget_low_u16(sizes));
    unsigned const highSizes = vaddv_u16(vget_high_u16(sizes));
    StoreShuffled(outBytes, vreinterpretq_u8_u16(vzip1q_u16(sequences.lastTwo, third)),
                  kThreeByteShuffles[lowSizes]);
    outBytes += kBlock / 2 + CountBits(lowSizes);
    StoreShuffled(outBytes, vreinterpretq_u8_u16(vzip2q_u16(sequences.lastTwo, third)),
                  kThreeByteShuffles[highSizes]);
    return outBytes + kBlock / 2 + CountBits(highSizes);
}

std::uint8_t* EncodeASCII(uint16x8_t inUnits, std::uint8_t* outBytes) noexcept {
    vst1_u8(outBytes, vmovn_u16(inUnits));
    return outBytes + kBlock;
}

std::uint8_t* EncodeBlock(Window const& inWindow, std::uint8_t* outBytes) noexcept {
    std::uint16_t const greatest = vmaxvq_u16(inWindow.units);
    return greatest < 0x80    ? EncodeASCII(inWindow.units, outBytes)
           : greatest < 0x800 ? EncodeUpToTwoBytes(inWindow.units, outBytes)
                              : EncodeAny(inWindow, outBytes);
}

} // namespace

UTF16Extent MeasureUTF16(std::uint16_t const* inText, std::size_t inCount) noexcept {
    std::size_t done = 0;
    std::size_t bytes = 0;
    uint16x8_t previous = vdupq_n_u16(0);
    for (; inCount - done >= kBlock; done += kBlock) {
        uint16x8_t const units = vld1q_u16(inText + done);
        if (vminvq_u16(units) == 0) {
            break;
        }
        // Each lane of a mask is -1. A pair takes two bytes less than its two units would take by
        // themselves.
        uint16x8_t const pairs = ArePairs(vextq_u16(previous, units, 7), units);
        uint16x8_t const sizes =
            vsubq_u16(vdupq_n_u16(1), vaddq_u16(AreFrom(units, 0x80), AreFrom(units, 0x800)));
        bytes += vaddvq_u16(vaddq_u16(sizes, vaddq_u16(pairs, pairs)));
        previous = units;
    }
    UTF16Extent const rest = kPortableUnicodeKernels.MeasureUTF16(inText + done, inCount - done);
    bool const isPairAcross = done != 0 && rest.units != 0 &&
                              (inText[done - 1] & 0xFC00) == 0xD800 &&
                              (inText[done] & 0xFC00) == 0xDC00;
    return {done + rest.units, bytes + rest.bytes - (isPairAcross ? 2 : 0)};
}

std::size_t EncodeUTF8(std::uint16_t const* inText, std::size_t inCount,
                       std::uint8_t* outBytes) noexcept {
    std::uint8_t* bytes = outBytes;
    std::size_t done = 0;
    uint16x8_t previous = vdupq_n_u16(0);
    // There is one unit more than the block, so that a pair across the block's end is recognised.
    for (; inCount - done > kBlock; done += kBlock) {
        std::uint16_t const* const text = inText + done;
        uint16x8_t const units = vld1q_u16(text);
        bytes = EncodeBlock({units, vextq_u16(previous, units, 7), vld1q_u16(text + 1)}, bytes);
        previous = units;
    }
    if (done != inCount) {
        std::size_t const count = inCount - done;
        std::uint16_t rest[kBlock + 1] = {};
        std::copy_n(inText + done, count, rest);
        uint16x8_t const units = vld1q_u16(rest);
        bytes = EncodeBlock({units, vextq_u16(previous, units, 7), vld1q_u16(rest + 1)}, bytes);
        // Each NUL that fills up the block has produced a byte.
        bytes -= kBlock - count;
    }
    return static_cast<std::size_t>(bytes - outBytes);
}

} // namespace brindle::utility::impl::neon

#endif
