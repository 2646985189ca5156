#include "utility/src/unicode/UnicodeAvx512.h"
#include "utility/src/unicode/UnicodeBlocks.h"

#if defined(__x86_64__)

#include <algorithm>

namespace brindle::utility::impl::avx512 {
namespace {

constexpr std::size_t kBlock = 64;
constexpr std::size_t kGroup = 4 * kBlock;

/// Loads the `inCount` bytes at `inText`, 1 to 64, followed by NULs.
BRN_AVX512 inline __m512i LoadUpToBlock(std::uint8_t const* inText, std::size_t inCount) noexcept {
    return inCount == kBlock ? Load(inText) : _mm512_maskz_loadu_epi8(LowBits(inCount), inText);
}

BRN_AVX512 inline bool IsASCII(__m512i inBytes) noexcept {
    return _mm512_movepi8_mask(inBytes) == 0;
}

BRN_AVX512 inline bool IsASCIIGroup(std::uint8_t const* inText) noexcept {
    return IsASCII(Union(Load(inText), Load(inText + kBlock), Load(inText + 2 * kBlock),
                         Load(inText + 3 * kBlock)));
}

BRN_AVX512 inline void StoreASCII(__m512i inBytes, std::uint16_t* outUnits) noexcept {
    Store(outUnits, _mm512_cvtepu8_epi16(_mm512_castsi512_si256(inBytes)));
    Store(outUnits + kBlock / 2, _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(inBytes, 1)));
}

// A mask has one bit for each byte of a block, the first byte's in the lowest bit.

BRN_AVX512 inline __mmask64 AreFrom(__m512i inBytes, Pattern32 const& inLeast) noexcept {
    return _mm512_cmpge_epu8_mask(inBytes, Splat(inLeast));
}

/// The bytes 0x80 to 0xBF. As signed numbers they are less than all others.
BRN_AVX512 inline __mmask64 AreTrailing(__m512i inBytes) noexcept {
    return _mm512_cmplt_epi8_mask(inBytes, Splat(kDecode.lead2));
}

/// The leads of the sequences of at least two, three and four bytes.
struct Leads {
    BRN_AVX512 static Leads In(__m512i inBytes) noexcept {
        return {AreFrom(inBytes, kDecode.lead2), AreFrom(inBytes, kDecode.lead3),
                AreFrom(inBytes, kDecode.lead4)};
    }

    /// True if a sequence goes on behind the block.
    bool AreOpen() const noexcept { return (two >> 63 | three >> 62 | four >> 61) != 0; }

    std::uint64_t two;
    std::uint64_t three;
    std::uint64_t four;
};

/// What the bytes of a block are in their sequences, which may start in the block before.
struct Places {
    BRN_AVX512 Places(Leads const& inBefore, Leads const& inLeads) noexcept
        : third(inLeads.three << 2 | inBefore.three >> 62),
          thirdOfFour(inLeads.four << 2 | inBefore.four >> 62),
          fourth(inLeads.four << 3 | inBefore.four >> 61),
          trailing(inLeads.two << 1 | inBefore.two >> 63 | third | fourth),
          kept(~(inLeads.two | inLeads.three << 1 | inBefore.three >> 63)) {}

    std::uint64_t third;
    std::uint64_t thirdOfFour;
    std::uint64_t fourth;
    std::uint64_t trailing;
    /// The bytes that give a unit, which are all except leads and the bytes directly behind leads
    /// of three and four. So ASCII and the last byte of a sequence of two or three give the unit,
    /// and the third and fourth bytes of four give the two units of a pair.
    std::uint64_t kept;
};

/// For each byte the value of its sequence up to and including that byte, of which the lower 16
/// bits are kept.
struct Values {
    __m512i low;
    __m512i high;
};

/// `inText` is the address of the bytes. What is before it is read only where a sequence started
/// there. `inTrailing` equals `inPlaces.trailing`, but is in a mask register already.
BRN_AVX512 inline Values CombineBytes(std::uint8_t const* inText, __m512i inBytes,
                                      __mmask64 inTrailing, Places const& inPlaces) noexcept {
    __m512i const middle = _mm512_maskz_loadu_epi8(inTrailing, inText - 1);
    __m512i const first = _mm512_maskz_loadu_epi8(inPlaces.third, inText - 2);
    // Shifts of 16 bits serve for bytes, because the bits from the neighbour are not selected.
    __m512i const low = Select(Splat(kDecode.lowSixBits), inBytes, _mm512_slli_epi16(middle, 6));
    return {_mm512_mask_mov_epi8(inBytes, inTrailing, low),
            Select(Splat(kDecode.lowFourBits), _mm512_srli_epi16(middle, 2),
                   _mm512_slli_epi16(first, 4))};
}

/// True if no sequence has a value that a shorter one has, nor one above U+10FFFF.
BRN_AVX512 inline bool AreInRange(__m512i inBytes, Leads const& inLeads, Values const& inValues,
                                  Places const& inPlaces) noexcept {
    __mmask64 wrong = _mm512_mask_cmplt_epu8_mask(inLeads.two, inBytes, Splat(kDecode.leastLead2));
    wrong |= _mm512_mask_cmplt_epu8_mask(inPlaces.third & ~inPlaces.thirdOfFour, inValues.high,
                                         Splat(kDecode.leastHigh3));
    if (inPlaces.thirdOfFour != 0) {
        __m512i const aboveLeast = _mm512_sub_epi8(inValues.high, Splat(kDecode.leastHigh4));
        wrong |= _mm512_mask_cmpgt_epu8_mask(inPlaces.thirdOfFour, aboveLeast,
                                             Splat(kDecode.rangeOfHigh4));
    }
    return wrong == 0;
}

/// The units of the kept bytes, 32 in each vector.
struct Units {
    __m512i first;
    __m512i second;
};

BRN_AVX512 inline Units KeepUnits(Values const& inValues, __mmask64 inKept) noexcept {
    __m512i const order = Load(kDecode.interleaved);
    __m512i const low =
        _mm512_permutexvar_epi64(order, _mm512_maskz_compress_epi8(inKept, inValues.low));
    __m512i const high =
        _mm512_permutexvar_epi64(order, _mm512_maskz_compress_epi8(inKept, inValues.high));
    return {_mm512_unpacklo_epi8(low, high), _mm512_unpackhi_epi8(low, high)};
}

/// For sequences of four bytes, replaces the value at the third byte by the first unit of the
/// surrogate pair, and the value at the fourth byte by the second unit.
BRN_AVX512 inline __m512i MakePairs(__m512i inUnits, std::uint64_t inThird,
                                    std::uint64_t inFourth) noexcept {
    __m512i const withFirst =
        _mm512_mask_add_epi16(inUnits, static_cast<__mmask32>(inThird),
                              _mm512_srli_epi16(inUnits, 4), Splat(kDecode.firstOfPair));
    return _mm512_mask_add_epi16(withFirst, static_cast<__mmask32>(inFourth),
                                 _mm512_and_si512(inUnits, Splat(kDecode.lowTenBits)),
                                 Splat(kDecode.secondOfPair));
}

} // namespace

std::size_t CountUTF16(std::uint8_t const* inText, std::size_t inCount) noexcept {
    std::size_t units = inCount;
    std::size_t done = 0;
    while (done != inCount) {
        if (inCount - done >= kGroup && IsASCIIGroup(inText + done)) {
            done += kGroup;
            continue;
        }
        std::size_t const end = std::min(inCount, done + kGroup);
        while (done != end) {
            std::size_t const count = std::min(end - done, kBlock);
            __m512i const bytes = LoadUpToBlock(inText + done, count);
            units += CountBits(AreFrom(bytes, kDecode.lead4));
            units -= CountBits(AreTrailing(bytes));
            done += count;
        }
    }
    return units;
}

UnicodeProgress DecodeUTF8(std::uint8_t const* inText, std::size_t inCount,
                           std::uint16_t* outUnits) noexcept {
    std::uint16_t* units = outUnits;
    std::size_t done = 0;
    Leads before = {0, 0, 0};
    while (done != inCount) {
        std::uint8_t const* const text = inText + done;
        std::size_t const count = std::min(inCount - done, kBlock);
        __m512i const bytes = LoadUpToBlock(text, count);
        if (IsASCII(bytes)) {
            if (before.AreOpen()) {
                break;
            }
            StoreASCII(bytes, units);
            units += count;
            done += count;
            for (; inCount - done >= kGroup && IsASCIIGroup(inText + done); done += kGroup) {
                StoreASCII(Load(inText + done), units);
                StoreASCII(Load(inText + done + kBlock), units + kBlock);
                StoreASCII(Load(inText + done + 2 * kBlock), units + 2 * kBlock);
                StoreASCII(Load(inText + done + 3 * kBlock), units + 3 * kBlock);
                units += kGroup;
            }
            continue;
        }
        Leads const leads = Leads::In(bytes);
        Places const places(before, leads);
        __mmask64 const trailing = AreTrailing(bytes);
        if (places.trailing != trailing) {
            break;
        }
        Values const values = CombineBytes(text, bytes, trailing, places);
        if (!AreInRange(bytes, leads, values, places)) {
            break;
        }
        Units kept = KeepUnits(values, places.kept);
        if ((places.thirdOfFour | places.fourth) != 0) {
            std::uint64_t const third = _pext_u64(places.thirdOfFour, places.kept);
            std::uint64_t const fourth = _pext_u64(places.fourth, places.kept);
            kept.first = MakePairs(kept.first, third, fourth);
            kept.second = MakePairs(kept.second, third >> 32, fourth >> 32);
        }
        Store(units, kept.first);
        Store(units + kBlock / 2, kept.second);
        // Each NUL that fills up a partial block has produced a unit.
        units += CountBits(places.kept) - (kBlock - count);
        done += count;
        before = leads;
    }
    return FinishDecoding(inText, inCount, {done, static_cast<std::size_t>(units - outUnits)},
                          outUnits);
}

} // namespace brindle::utility::impl::avx512

#endif
