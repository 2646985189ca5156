#include "utility/src/unicode/UnicodeBlocks.h"
#include "utility/src/unicode/UnicodeFaults.h"
#include "utility/src/unicode/UnicodeNeon.h"

#if BRN_NEON

namespace brindle::utility::impl::neon {
namespace {

constexpr std::size_t kBlock = 16;

/// A block of bytes, and in the same lanes the bytes one, two and three places before each.
struct Window {
    Window(uint8x16_t inPrevious, uint8x16_t inBytes) noexcept
        : bytes(inBytes), before1(vextq_u8(inPrevious, inBytes, 15)),
          before2(vextq_u8(inPrevious, inBytes, 14)), before3(vextq_u8(inPrevious, inBytes, 13)) {}

    uint8x16_t bytes;
    uint8x16_t before1;
    uint8x16_t before2;
    uint8x16_t before3;
};

// A mask has 0xFF for each byte that it says something of, and 0 for the others.

uint8x16_t AreFrom(uint8x16_t inBytes, std::uint8_t inLeast) noexcept {
    return vcgeq_u8(inBytes, vdupq_n_u8(inLeast));
}

uint8x16_t LookUp(ByteShuffle const& inTable, uint8x16_t inHalves) noexcept {
    return vqtbl1q_u8(vld1q_u8(inTable.bytes), inHalves);
}

/// True if the block has no fault but for a sequence that goes on behind its end. `inLongLeads` are
/// the bytes that must be the third or fourth of a sequence, where two trailing bytes in a row are
/// no fault but required.
bool IsWellFormed(Window const& inWindow, uint8x16_t inLongLeads) noexcept {
    uint8x16_t const found = vandq_u8(
        vandq_u8(LookUp(faults::kFirstUpperHalf, vshrq_n_u8(inWindow.before1, 4)),
                 LookUp(faults::kFirstLowerHalf, vandq_u8(inWindow.before1, vdupq_n_u8(0x0F)))),
        LookUp(faults::kSecondUpperHalf, vshrq_n_u8(inWindow.bytes, 4)));
    uint8x16_t const expected = vandq_u8(inLongLeads, vdupq_n_u8(faults::kTwoTrailing));
    return vmaxvq_u8(veorq_u8(found, expected)) == 0;
}

/// For each byte the value of its sequence up to and including that byte, of which the lower 16
/// bits are kept.
struct Values {
    uint16x8_t low;  ///< of the first eight bytes
    uint16x8_t high; ///< of the others
};

uint16x8_t Combine(uint8x8_t inLast, uint8x8_t inMiddle, uint8x8_t inFirst) noexcept {
    uint16x8_t const lower = vorrq_u16(vmovl_u8(inLast), vshll_n_u8(inMiddle, 6));
    return vorrq_u16(lower, vshlq_n_u16(vmovl_u8(inFirst), 12));
}

Values CombineBytes(Window const& inWindow, uint8x16_t inLongLeads) noexcept {
    uint8x16_t const last = vandq_u8(inWindow.bytes, vdupq_n_u8(0x7F));
    uint8x16_t const middle =
        vandq_u8(vandq_u8(inWindow.before1, vdupq_n_u8(0x3F)), AreFrom(inWindow.bytes, 0x80));
    uint8x16_t const first = vandq_u8(inWindow.before2, inLongLeads);
    return {Combine(vget_low_u8(last), vget_low_u8(middle), vget_low_u8(first)),
            Combine(vget_high_u8(last), vget_high_u8(middle), vget_high_u8(first))};
}

uint16x8_t Widen(uint8x8_t inMask) noexcept {
    return vreinterpretq_u16_s16(vmovl_s8(vreinterpret_s8_u8(inMask)));
}

/// For sequences of four bytes, replaces the value at the third byte by the first unit of the
/// surrogate pair, and the value at the fourth byte by the second unit.
uint16x8_t MakePairs(uint16x8_t inValues, uint8x8_t inIsThird, uint8x8_t inIsFourth) noexcept {
    uint16x8_t const first = vaddq_u16(vshrq_n_u16(inValues, 4), vdupq_n_u16(0xD7C0));
    uint16x8_t const second =
        vorrq_u16(vandq_u16(inValues, vdupq_n_u16(0x03FF)), vdupq_n_u16(0xDC00));
    return vbslq_u16(Widen(inIsFourth), second, vbslq_u16(Widen(inIsThird), first, inValues));
}

/// Stores the values whose bits are set in `inKept`, and returns the end of the output.
std::uint16_t* StoreKept(uint16x8_t inValues, unsigned inKept, std::uint16_t* outUnits) noexcept {
    StoreShuffled(outUnits, vreinterpretq_u8_u16(inValues), kUnitShuffles[inKept]);
    return outUnits + CountBits(inKept);
}

constexpr std::uint8_t kLaneBits[8] = {1, 2, 4, 8, 16, 32, 64, 128};

/// One bit for each byte of a mask, the first byte's in the lowest bit.
unsigned Bits(uint8x8_t inMask) noexcept {
    return vaddv_u8(vand_u8(inMask, vld1_u8(kLaneBits)));
}

/// Decodes a well-formed block that is not all ASCII, and returns the end of the output.
std::uint16_t* DecodeBlock(Window const& inWindow, uint8x16_t inLongLeads,
                           std::uint16_t* outUnits) noexcept {
    Values values = CombineBytes(inWindow, inLongLeads);
    uint8x16_t const third = AreFrom(inWindow.before2, 0xF0);
    uint8x16_t const fourth = AreFrom(inWindow.before3, 0xF0);
    if (vmaxvq_u8(vorrq_u8(third, fourth)) != 0) {
        values.low = MakePairs(values.low, vget_low_u8(third), vget_low_u8(fourth));
        values.high = MakePairs(values.high, vget_high_u8(third), vget_high_u8(fourth));
    }
    // A unit is kept for every byte except leads and the bytes directly behind leads of three and
    // four. So ASCII and the last byte of a sequence of two or three give the unit, and the third
    // and fourth bytes of four give the two units of a pair.
    uint8x16_t const kept =
        vmvnq_u8(vorrq_u8(AreFrom(inWindow.bytes, 0xC0), AreFrom(inWindow.before1, 0xE0)));
    outUnits = StoreKept(values.low, Bits(vget_low_u8(kept)), outUnits);
    return StoreKept(values.high, Bits(vget_high_u8(kept)), outUnits);
}

} // namespace

std::size_t CountUTF16(std::uint8_t const* inText, std::size_t inCount) noexcept {
    std::size_t units = 0;
    std::size_t done = 0;
    for (; inCount - done >= kBlock; done += kBlock) {
        uint8x16_t const bytes = vld1q_u8(inText + done);
        // As signed numbers, trailing bytes are less than all other bytes.
        uint8x16_t const starts = vcgtq_s8(vreinterpretq_s8_u8(bytes), vdupq_n_s8(-0x41));
        // Each lane of a mask is -1.
        uint8x16_t const counts = vaddq_u8(starts, AreFrom(bytes, 0xF0));
        units += vaddvq_u8(vsubq_u8(vdupq_n_u8(0), counts));
    }
    return units + kPortableUnicodeKernels.CountUTF16(inText + done, inCount - done);
}

UnicodeProgress DecodeUTF8(std::uint8_t const* inText, std::size_t inCount,
                           std::uint16_t* outUnits) noexcept {
    std::uint16_t* units = outUnits;
    std::size_t done = 0;
    uint8x16_t previous = vdupq_n_u8(0);
    for (; inCount - done >= kBlock; done += kBlock) {
        uint8x16_t const bytes = vld1q_u8(inText + done);
        if (vmaxvq_u8(bytes) < 0x80) {
            if (done != 0 && IsInsideSequence(inText + done)) {
                break;
            }
            vst1q_u16(units, vmovl_u8(vget_low_u8(bytes)));
            vst1q_u16(units + kBlock / 2, vmovl_u8(vget_high_u8(bytes)));
            units += kBlock;
        } else {
            Window const window(previous, bytes);
            uint8x16_t const longLeads =
                vorrq_u8(AreFrom(window.before2, 0xE0), AreFrom(window.before3, 0xF0));
            if (!IsWellFormed(window, longLeads)) {
                break;
            }
            units = DecodeBlock(window, longLeads, units);
        }
        previous = bytes;
    }
    return FinishDecoding(inText, inCount, {done, static_cast<std::size_t>(units - outUnits)},
                          outUnits);
}

} // namespace brindle::utility::impl::neon

#endif
