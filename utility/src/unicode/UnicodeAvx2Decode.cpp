#include "utility/src/unicode/UnicodeAvx2.h"

#if defined(__x86_64__)

#include <algorithm>
#include <cstring>

namespace brindle::utility::impl::avx2 {
namespace {

constexpr std::size_t kBlock = 32;

/// Index: the bits of the lanes of two bytes that are kept.
constexpr ByteShuffles MakeUnitShuffles() {
    ByteShuffles shuffles{};
    for (unsigned kept = 0; kept < 256; ++kept) {
        unsigned next = 0;
        for (unsigned lane = 0; lane < 8; ++lane) {
            if ((kept >> lane & 1) != 0) {
                shuffles[kept].bytes[next++] = static_cast<std::uint8_t>(2 * lane);
                shuffles[kept].bytes[next++] = static_cast<std::uint8_t>(2 * lane + 1);
            }
        }
    }
    return shuffles;
}

constexpr ByteShuffles kUnitShuffles = MakeUnitShuffles();

BRN_AVX2 inline __m256i Splat(int inByte) noexcept {
    return _mm256_set1_epi8(static_cast<char>(inByte));
}

constexpr std::uint32_t kLaneNumbers[kBlock / 4] = {0, 1, 2, 3, 4, 5, 6, 7};

/// The `inCount` bytes at `inText`, 1 to 31, and NUL behind them.
BRN_AVX2 inline __m256i LoadPart(std::uint8_t const* inText, std::size_t inCount) noexcept {
    // The last one to three bytes, which do not fill four.
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

/// All bits of a byte if its top bit is set.
BRN_AVX2 inline __m256i FillFromTopBit(__m256i inBytes) noexcept {
    return _mm256_cmpgt_epi8(_mm256_setzero_si256(), inBytes);
}

/// A block of bytes, beside the bytes one, two and three places before each.
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

// What can be wrong with two neighbouring bytes. Three tables tell what the halves of the first
// byte and the upper half of the second leave possible; what is in all three is the case.
constexpr std::uint8_t kTooShort = 0x01;    // a lead with no trailing byte behind it
constexpr std::uint8_t kTooLong = 0x02;     // a trailing byte behind ASCII
constexpr std::uint8_t kOverlong3 = 0x04;   // E0 80..9F
constexpr std::uint8_t kTooLarge = 0x08;    // F4..FF 90..BF
constexpr std::uint8_t kOverlong2 = 0x20;   // C0..C1 80..BF
constexpr std::uint8_t kNotFour = 0x40;     // F0 and F5..FF 80..8F
constexpr std::uint8_t kTwoTrailing = 0x80; // wrong unless a longer lead stands before them
constexpr std::uint8_t kLow = kTooShort | kTooLong | kTwoTrailing;
constexpr std::uint8_t kLowLarge = kLow | kTooLarge | kNotFour;
constexpr std::uint8_t kTrailing = kTooLong | kOverlong2 | kTwoTrailing;

constexpr ByteShuffle kFirstUpperHalf = {
    {kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTwoTrailing,
     kTwoTrailing, kTwoTrailing, kTwoTrailing, kTooShort | kOverlong2, kTooShort,
     kTooShort | kOverlong3, kTooShort | kTooLarge | kNotFour}};
constexpr ByteShuffle kFirstLowerHalf = {
    {kLow | kOverlong2 | kOverlong3 | kNotFour, kLow | kOverlong2, kLow, kLow, kLow | kTooLarge,
     kLowLarge, kLowLarge, kLowLarge, kLowLarge, kLowLarge, kLowLarge, kLowLarge, kLowLarge,
     kLowLarge, kLowLarge, kLowLarge}};
constexpr ByteShuffle kSecondUpperHalf = {
    {kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort,
     kTrailing | kOverlong3 | kNotFour, kTrailing | kOverlong3 | kTooLarge, kTrailing | kTooLarge,
     kTrailing | kTooLarge, kTooShort, kTooShort, kTooShort, kTooShort}};

BRN_AVX2 inline __m256i LookUp(ByteShuffle const& inTable, __m256i inHalves) noexcept {
    __m128i const table = _mm_load_si128(reinterpret_cast<__m128i const*>(inTable.bytes));
    return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(table), inHalves);
}

BRN_AVX2 inline __m256i UpperHalves(__m256i inBytes) noexcept {
    return _mm256_and_si256(_mm256_srli_epi16(inBytes, 4), Splat(0x0F));
}

/// The top bit of a byte is set if a lead of at least `inLead` stands where `inBefore` is taken
/// from.
BRN_AVX2 inline __m256i IsLeadFrom(__m256i inBefore, int inLead) noexcept {
    return _mm256_subs_epu8(inBefore, Splat(inLead - 0x80));
}

/// `inLongLeads` has the top bit in the third and fourth bytes of sequences.
BRN_AVX2 inline bool IsWellFormed(Window const& inWindow, __m256i inLongLeads) noexcept {
    __m256i const found = _mm256_and_si256(
        _mm256_and_si256(LookUp(kFirstUpperHalf, UpperHalves(inWindow.before1)),
                         LookUp(kFirstLowerHalf, _mm256_and_si256(inWindow.before1, Splat(0x0F)))),
        LookUp(kSecondUpperHalf, UpperHalves(inWindow.bytes)));
    __m256i const expected = _mm256_and_si256(inLongLeads, Splat(0x80));
    __m256i const wrong = _mm256_xor_si256(found, expected);
    return _mm256_testz_si256(wrong, wrong) != 0;
}

/// True if a sequence that starts in the three bytes before `inText` goes on there.
inline bool IsInsideSequence(std::uint8_t const* inText) noexcept {
    return inText[-1] >= 0xC0 || inText[-2] >= 0xE0 || inText[-3] >= 0xF0;
}

/// The values that the sequences have up to each byte, their lower 16 bits, in lanes of two bytes.
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
    // last + 64 * middle, and the lower four bits of `first` shifted to the top.
    __m256i const weights = _mm256_set1_epi16(0x4001);
    return {_mm256_or_si256(_mm256_maddubs_epi16(_mm256_unpacklo_epi8(last, middle), weights),
                            _mm256_slli_epi16(_mm256_unpacklo_epi8(zero, first), 4)),
            _mm256_or_si256(_mm256_maddubs_epi16(_mm256_unpackhi_epi8(last, middle), weights),
                            _mm256_slli_epi16(_mm256_unpackhi_epi8(zero, first), 4))};
}

/// Turns the values at the third bytes of sequences of four into the pairs' first units, and those
/// at the fourth bytes into the second units.
BRN_AVX2 inline __m256i MakePairs(__m256i inValues, __m256i inIsThird,
                                  __m256i inIsFourth) noexcept {
    __m256i const first =
        _mm256_add_epi16(_mm256_srli_epi16(inValues, 4), _mm256_set1_epi16(-0x2840));
    __m256i const second = _mm256_or_si256(_mm256_and_si256(inValues, _mm256_set1_epi16(0x03FF)),
                                           _mm256_set1_epi16(-0x2400));
    return _mm256_blendv_epi8(_mm256_blendv_epi8(inValues, first, inIsThird), second, inIsFourth);
}

/// Stores the lanes whose bits are set in `inKept`.
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
        // Trailing bytes are the least as signed numbers.
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
    // A lead of three or four was the last byte of the block before.
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
            // Every byte gives a unit but the leads and the bytes behind leads of three and four;
            // so the third byte of four gives the first unit of a pair, and the fourth the second.
            std::uint32_t const leads = notASCII & TopBits(_mm256_slli_epi16(bytes, 1));
            std::uint32_t const longs = leads & TopBits(_mm256_slli_epi16(bytes, 2));
            units = StoreKept(values, ~(leads | longs << 1 | longLeadBefore), units);
            longLeadBefore = longs >> (kBlock - 1);
        }
        previous = bytes;
        done += count;
        // The NULs that fill up the block have given a unit each.
        units -= kBlock - count;
    }
    // A part of a block ends with a whole sequence, for NUL breaks off any other.
    if (done >= kBlock) {
        // The rest starts with a whole sequence: what a block left incomplete is decoded again.
        if (inText[done - 1] >= 0xC0) {
            done -= 1;
        } else if (inText[done - 2] >= 0xE0) {
            done -= 2;
        } else if (inText[done - 3] >= 0xF0) {
            done -= 3;
            units -= 1;
        }
    }
    if (done == inCount) {
        return {done, static_cast<std::size_t>(units - outUnits)};
    }
    UnicodeProgress const rest =
        kPortableUnicodeKernels.DecodeUTF8(inText + done, inCount - done, units);
    return {done + rest.consumed, static_cast<std::size_t>(units - outUnits) + rest.produced};
}

} // namespace brindle::utility::impl::avx2

#endif
