#include "utility/src/unicode/UnicodeAvx2.h"
#include "utility/src/unicode/UnicodeBlocks.h"
#include "utility/src/unicode/UnicodeFaults.h"

#if defined(__x86_64__)

#include <algorithm>
#include <cstring>

namespace brindle::utility::impl::avx2 {
namespace {

constexpr std::size_t kBlock = 32;

BRN_AVX2 inline __m256i Splat(int inByte) noexcept {
    return _mm256_set1_epi8(static_cast<char>(inByte));
}

constexpr std::uint32_t kLaneNumbers[kBlock / 4] = {0, 1, 2, 3, 4, 5, 6, 7};

/// Loads the `inCount` bytes at `inText`, 1 to 31, followed by NULs. A masked load reads whole
/// groups of four bytes, so the last one to three bytes are loaded separately.
BRN_AVX2 inline __m256i LoadPart(std::uint8_t const* inText, std::size_t inCount) noexcept {
    std::size_t const wholes = inCount / 4 * 4;
    std::uint32_t rest = 0;
    if (inCount >= 4) {
        std::uint32_t lastFour;
        std::memcpy(&lastFour, inText + inCount - 4, 4);
        rest = static_cast<std::uint32_t>(std::uint64_t{lastFour} >> (32 - 8 * (inCount - wholes)));
    } else {
        for (std::size_t i = inCount; i-- != 0;) {
            rest = rest << 8 | inText[i];
        }
    }
    __m256i const lanes = Load(kLaneNumbers);
    __m256i const count = _mm256_set1_epi32(static_cast<int>(wholes / 4));
    __m256i const bytes =
        _mm256_maskload_epi32(static_cast<int const*>(static_cast<void const*>(inText)),
                              _mm256_cmpgt_epi32(count, lanes));
    return _mm256_blendv_epi8(bytes, _mm256_set1_epi32(static_cast<int>(rest)),
                              _mm256_cmpeq_epi32(count, lanes));
}

/// 0xFF for each byte whose top bit is set, 0 for the others.
BRN_AVX2 inline __m256i FillFromTopBit(__m256i inBytes) noexcept {
    return _mm256_cmpgt_epi8(_mm256_setzero_si256(), inBytes);
}

/// A block of bytes, and in the same lanes the bytes one, two and three places before each.
struct Window {
    __m256i bytes;
    __m256i before1;
    __m256i before2;
    __m256i before3;
};

BRN_AVX2 inline Window MakeWindow(__m256i inPrevious, __m256i inBytes) noexcept {
    __m256i const middle = _mm256_permute2x128_si256(inPrevious, inBytes, 0x21);
    return {inBytes, _mm256_alignr_epi8(inBytes, middle, 15),
            _mm256_alignr_epi8(inBytes, middle, 14), _mm256_alignr_epi8(inBytes, middle, 13)};
}

BRN_AVX2 inline __m256i LookUp(ByteShuffle const& inTable, __m256i inHalves) noexcept {
    __m128i const table = _mm_load_si128(reinterpret_cast<__m128i const*>(inTable.bytes));
    return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(table), inHalves);
}

BRN_AVX2 inline __m256i UpperHalves(__m256i inBytes) noexcept {
    return _mm256_and_si256(_mm256_srli_epi16(inBytes, 4), Splat(0x0F));
}

/// Sets the top bit of each byte of `inBefore` that is at least `inLead`, and clears the others'.
BRN_AVX2 inline __m256i IsLeadFrom(__m256i inBefore, int inLead) noexcept {
    return _mm256_subs_epu8(inBefore, Splat(inLead - 0x80));
}

/// True if the block has no fault but for a sequence that goes on behind its end. In `inLongLeads`
/// the top bit is set in the bytes that must be the third or fourth of a sequence, where two
/// trailing bytes in a row are no fault but required.
BRN_AVX2 inline bool IsWellFormed(Window const& inWindow, __m256i inLongLeads) noexcept {
    __m256i const found = _mm256_and_si256(
        _mm256_and_si256(
            LookUp(faults::kFirstUpperHalf, UpperHalves(inWindow.before1)),
            LookUp(faults::kFirstLowerHalf, _mm256_and_si256(inWindow.before1, Splat(0x0F)))),
        LookUp(faults::kSecondUpperHalf, UpperHalves(inWindow.bytes)));
    __m256i const expected = _mm256_and_si256(inLongLeads, Splat(0x80));
    __m256i const wrong = _mm256_xor_si256(found, expected);
    return _mm256_testz_si256(wrong, wrong) != 0;
}

/// For each byte the value of its sequence up to and including that byte, of which the lower 16
/// bits are kept, in 16-bit lanes.
struct Values {
    __m256i even; ///< bytes 0..7 and 16..23
    __m256i odd;  ///< bytes 8..15 and 24..31
};

BRN_AVX2 inline Values CombineBytes(Window const& inWindow, __m256i inLongLeads) noexcept {
    __m256i const zero = _mm256_setzero_si256();
    __m256i const last = _mm256_and_si256(inWindow.bytes, Splat(0x7F));
    __m256i const middle = _mm256_and_si256(_mm256_and_si256(inWindow.before1, Splat(0x3F)),
                                            FillFromTopBit(inWindow.bytes));
    __m256i const first = _mm256_and_si256(inWindow.before2, FillFromTopBit(inLongLeads));
    // last + 64 * middle, and the lower four bits of `first` as the topmost four.
    __m256i const weights = _mm256_set1_epi16(0x4001);
    return {_mm256_or_si256(_mm256_maddubs_epi16(_mm256_unpacklo_epi8(last, middle), weights),
                            _mm256_slli_epi16(_mm256_unpacklo_epi8(zero, first), 4)),
            _mm256_or_si256(_mm256_maddubs_epi16(_mm256_unpackhi_epi8(last, middle), weights),
                            _mm256_slli_epi16(_mm256_unpackhi_epi8(zero, first), 4))};
}

/// For sequences of four bytes, replaces the value at the third byte by the first unit of the
/// surrogate pair, and the value at the fourth byte by the second unit.
BRN_AVX2 inline __m256i MakePairs(__m256i inValues, __m256i inIsThird,
                                  __m256i inIsFourth) noexcept {
    __m256i const first =
        _mm256_add_epi16(_mm256_srli_epi16(inValues, 4), _mm256_set1_epi16(-0x2840));
    __m256i const second = _mm256_or_si256(_mm256_and_si256(inValues, _mm256_set1_epi16(0x03FF)),
                                           _mm256_set1_epi16(-0x2400));
    return _mm256_blendv_epi8(_mm256_blendv_epi8(inValues, first, inIsThird), second, inIsFourth);
}

/// Stores the values of the bytes whose bits are set in `inKept`, and returns the end of the
/// output.
BRN_AVX2 inline std::uint16_t* StoreKept(Values const& inValues, std::uint32_t inKept,
                                         std::uint16_t* outUnits) noexcept {
    StoreShuffled(outUnits, LowHalf(inValues.even), kUnitShuffles[inKept & 0xFF]);
    StoreShuffled(outUnits + CountBits(inKept & 0xFF), LowHalf(inValues.odd),
                  kUnitShuffles[inKept >> 8 & 0xFF]);
    outUnits += CountBits(inKept & 0xFFFF);
    StoreShuffled(outUnits, HighHalf(inValues.even), kUnitShuffles[inKept >> 16 & 0xFF]);
    StoreShuffled(outUnits + CountBits(inKept >> 16 & 0xFF), HighHalf(inValues.odd),
                  kUnitShuffles[inKept >> 24]);
    return outUnits + CountBits(inKept >> 16);
}

} // namespace

std::size_t CountUTF16(std::uint8_t const* inText, std::size_t inCount) noexcept {
    std::size_t units = 0;
    std::size_t done = 0;
    for (; inCount - done >= kBlock; done += kBlock) {
        __m256i const bytes = Load(inText + done);
        // As signed numbers, trailing bytes are less than all other bytes.
        units += CountBits(TopBits(_mm256_cmpgt_epi8(bytes, Splat(-0x41)))) +
                 CountBits(TopBits(IsLeadFrom(bytes, 0xF0)));
    }
    return units + kPortableUnicodeKernels.CountUTF16(inText + done, inCount - done);
}

UnicodeProgress DecodeUTF8(std::uint8_t const* inText, std::size_t inCount,
                           std::uint16_t* outUnits) noexcept {
    std::uint16_t* units = outUnits;
    std::size_t done = 0;
    __m256i previous = _mm256_setzero_si256();
    // 1 if the last byte of the previous block was a lead of a sequence of three or four.
    std::uint32_t longLeadBefore = 0;
    while (done != inCount) {
        std::size_t const count = std::min(inCount - done, kBlock);
        __m256i const bytes =
            count == kBlock ? Load(inText + done) : LoadPart(inText + done, count);
        std::uint32_t const notASCII = TopBits(bytes);
        if (notASCII == 0) {
            if (done != 0 && IsInsideSequence(inText + done)) {
                break;
            }
            Store(units, _mm256_cvtepu8_epi16(LowHalf(bytes)));
            Store(units + kBlock / 2, _mm256_cvtepu8_epi16(HighHalf(bytes)));
            units += kBlock;
        } else {
            Window const window = MakeWindow(previous, bytes);
            __m256i const fourth = IsLeadFrom(window.before3, 0xF0);
            __m256i const longLeads = _mm256_or_si256(IsLeadFrom(window.before2, 0xE0), fourth);
            if (!IsWellFormed(window, longLeads)) {
                break;
            }
            Values values = CombineBytes(window, longLeads);
            __m256i const third = IsLeadFrom(window.before2, 0xF0);
            if (TopBits(_mm256_or_si256(third, fourth)) != 0) {
                __m256i const isThird = FillFromTopBit(third);
                __m256i const isFourth = FillFromTopBit(fourth);
                values.even = MakePairs(values.even, _mm256_unpacklo_epi8(isThird, isThird),
                                        _mm256_unpacklo_epi8(isFourth, isFourth));
                values.odd = MakePairs(values.odd, _mm256_unpackhi_epi8(isThird, isThird),
                                       _mm256_unpackhi_epi8(isFourth, isFourth));
            }
            // A unit is kept for every byte except leads and the bytes directly behind leads of
            // three and four. So ASCII and the last byte of a sequence of two or three give the
            // unit, and the third and fourth bytes of four give the two units of a pair.
            std::uint32_t const leads = notASCII & TopBits(_mm256_slli_epi16(bytes, 1));
            std::uint32_t const longs = leads & TopBits(_mm256_slli_epi16(bytes, 2));
            units = StoreKept(values, ~(leads | longs << 1 | longLeadBefore), units);
            longLeadBefore = longs >> (kBlock - 1);
        }
        previous = bytes;
        done += count;
        // Each NUL that fills up a partial block has produced a unit.
        units -= kBlock - count;
    }
    // A partial block cannot end inside a sequence, because the NUL behind it would be a fault.
    return FinishDecoding(inText, inCount, {done, static_cast<std::size_t>(units - outUnits)},
                          outUnits);
}

} // namespace brindle::utility::impl::avx2

#endif
