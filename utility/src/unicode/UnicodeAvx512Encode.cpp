#include "utility/src/unicode/UnicodeAvx512.h"

#if defined(__x86_64__)

#include <algorithm>

namespace brindle::utility::impl::avx512 {
namespace {

constexpr std::size_t kBlock = 32;

BRN_AVX512 inline __m512i LoadUpToBlock(std::uint16_t const* inText, std::size_t inCount) noexcept {
    return inCount >= kBlock
               ? Load(inText)
               : _mm512_maskz_loadu_epi16(static_cast<__mmask32>(LowBits(inCount)), inText);
}

/// The units that have any of the bits, one bit a unit, the first unit's in the lowest bit.
BRN_AVX512 inline __mmask32 HaveAny(__m512i inUnits, Pattern32 const& inBits) noexcept {
    return _mm512_test_epi16_mask(inUnits, Splat(inBits));
}

BRN_AVX512 inline __mmask32 HaveNone(__m512i inUnits, Pattern32 const& inBits) noexcept {
    return _mm512_testn_epi16_mask(inUnits, Splat(inBits));
}

BRN_AVX512 inline __mmask32 AreOfKind(__m512i inUnits, Pattern32 const& inKind) noexcept {
    return _mm512_cmpeq_epi16_mask(_mm512_and_si512(inUnits, Splat(kEncode.kind)), Splat(inKind));
}

/// For each unit two bytes that hold bits of it: `inBits` says from which bit on, `inMask` how many
/// of them, and `inTags` what is added.
BRN_AVX512 inline __m512i BytePairs(__m512i inUnits, Pattern64 const& inBits,
                                    Pattern32 const& inMask, Pattern32 const& inTags) noexcept {
    __m512i const bytes = _mm512_multishift_epi64_epi8(Splat(inBits), inUnits);
    return _mm512_ternarylogic_epi64(bytes, Splat(inMask), Splat(inTags), 0xEA);
}

/// Stores the bytes that differ from those of `inAbsent`, without gaps.
BRN_AVX512 inline void StorePresent(__m512i inBytes, Pattern32 const& inAbsent,
                                    std::uint8_t* outBytes) noexcept {
    __mmask64 const kept = _mm512_cmpneq_epi8_mask(inBytes, Splat(inAbsent));
    Store(outBytes, _mm512_maskz_compress_epi8(kept, inBytes));
}

/// Encodes 32 units below 0x80.
BRN_AVX512 inline std::uint8_t* EncodeASCII(__m512i inUnits, std::uint8_t* outBytes) noexcept {
    _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(outBytes), _mm512_cvtepi16_epi8(inUnits));
    return outBytes + kBlock;
}

/// Encodes 32 units below 0x800.
BRN_AVX512 inline std::uint8_t* EncodeUpToTwoBytes(__m512i inUnits,
                                                   std::uint8_t* outBytes) noexcept {
    __m512i const twoBytes = BytePairs(inUnits, kEncode.bits6And0, kEncode.leadAndTrailing2Mask,
                                       kEncode.leadAndTrailing2);
    __mmask32 const notASCII = HaveAny(inUnits, kEncode.notASCII);
    StorePresent(_mm512_mask_mov_epi16(inUnits, notASCII, twoBytes), kEncode.absentOfTwo, outBytes);
    return outBytes + kBlock + CountBits(notASCII);
}

/// True if each unit is encoded to three bytes.
BRN_AVX512 inline bool AreThreeBytes(__m512i inUnits) noexcept {
    __m512i const upper = _mm512_and_si512(inUnits, Splat(kEncode.notTwoBytes));
    __mmask32 const surrogates = _mm512_cmpeq_epi16_mask(upper, Splat(kEncode.high));
    return (surrogates | HaveNone(inUnits, kEncode.notTwoBytes)) == 0;
}

/// Encodes 32 units from 0x800 on that are no surrogates.
BRN_AVX512 inline std::uint8_t* EncodeThreeBytes(__m512i inUnits, std::uint8_t* outBytes) noexcept {
    __m512i const firstTwo = BytePairs(inUnits, kEncode.bits12And6, kEncode.leadAndTrailing3Mask,
                                       kEncode.leadAndTrailing3);
    __m512i const last = _mm512_ternarylogic_epi64(inUnits, Splat(kEncode.trailingMask),
                                                   Splat(kEncode.trailingTwo), 0xEA);
    Store(outBytes, _mm512_permutex2var_epi8(firstTwo, Load(kEncode.threeBytes), last));
    __m512i const rest =
        _mm512_permutex2var_epi8(firstTwo, Load(kEncode.threeBytes + sizeof(__m512i)), last);
    _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(outBytes + sizeof(__m512i)),
                        _mm512_castsi512_si256(rest));
    return outBytes + 3 * kBlock;
}

/// A block of units and, in the same lanes, the unit before and behind each.
struct Window {
    __m512i units;
    __m512i before;
    __m512i behind;
};

BRN_AVX512 inline Window MakeWindow(__m512i inPrevious, __m512i inUnits,
                                    __m512i inBehind) noexcept {
    __m512i const pairBefore = _mm512_alignr_epi32(inUnits, inPrevious, 15);
    return {inUnits, _mm512_shldi_epi32(inUnits, pairBefore, 16), inBehind};
}

/// The sequences of a block of units: for each the last two bytes, and the first of three. What a
/// shorter sequence does not have is 0.
struct Sequences {
    __m512i lastTwo;
    __m512i first;
    std::uint32_t two;   ///< the units of at least two bytes, one bit each
    std::uint32_t three; ///< those of three
};

/// Each unit of a surrogate pair becomes two bytes, which together are the four bytes of the pair.
BRN_AVX512 inline Sequences MakeSequences(Window const& inWindow) noexcept {
    __m512i const units = inWindow.units;
    __mmask32 const isHigh =
        AreOfKind(units, kEncode.high) & AreOfKind(inWindow.behind, kEncode.low);
    __mmask32 const isLow =
        AreOfKind(units, kEncode.low) & AreOfKind(inWindow.before, kEncode.high);

    Sequences result;
    result.two = HaveAny(units, kEncode.notASCII);
    result.three = HaveAny(units, kEncode.notTwoBytes) & ~(isHigh | isLow);
    result.first =
        _mm512_maskz_add_epi16(result.three, _mm512_srli_epi16(units, 12), Splat(kEncode.lead3));

    __m512i bytes = BytePairs(units, kEncode.bits6And0, kEncode.trailingMask, kEncode.trailingTwo);
    bytes = _mm512_mask_add_epi16(bytes, HaveNone(units, kEncode.notTwoBytes), bytes,
                                  Splat(kEncode.trailingToLead2));
    bytes = _mm512_mask_slli_epi16(bytes, HaveNone(units, kEncode.notASCII), units, 8);
    __m512i const upper = _mm512_add_epi16(_mm512_and_si512(units, Splat(kEncode.lowTenBits)),
                                           Splat(kEncode.planeOne));
    bytes = _mm512_mask_mov_epi16(bytes, isHigh,
                                  BytePairs(upper, kEncode.bits8And2, kEncode.leadAndTrailing4Mask,
                                            kEncode.leadAndTrailing4));
    // The lowest two bits of the first unit are in the third byte.
    result.lastTwo = _mm512_mask_mov_epi16(
        bytes, isLow,
        Select(Splat(kEncode.carriedBits), _mm512_slli_epi16(inWindow.before, 4), bytes));
    return result;
}

/// Encodes the first `inCount` units of any kind, and NULs up to the next multiple of 16. Of a
/// surrogate pair across the border of the block, only the two bytes for the unit in the block are
/// written.
BRN_AVX512 inline std::uint8_t* EncodeAny(Window const& inWindow, std::size_t inCount,
                                          std::uint8_t* outBytes) noexcept {
    Sequences const sequences = MakeSequences(inWindow);
    __m512i const order = Load(kEncode.interleaved);
    __m512i const first = _mm512_permutexvar_epi64(order, sequences.first);
    __m512i const lastTwo = _mm512_permutexvar_epi64(order, sequences.lastTwo);
    StorePresent(_mm512_unpacklo_epi16(first, lastTwo), kEncode.absentOfThree, outBytes);
    outBytes +=
        kBlock / 2 + CountBits(sequences.two & 0xFFFF) + CountBits(sequences.three & 0xFFFF);
    if (inCount > kBlock / 2) {
        StorePresent(_mm512_unpackhi_epi16(first, lastTwo), kEncode.absentOfThree, outBytes);
        outBytes += kBlock / 2 + CountBits(sequences.two >> 16) + CountBits(sequences.three >> 16);
    }
    return outBytes;
}

/// Four blocks whose kind is tested once, so that there is one branch for four blocks in text of
/// one script.
struct Group {
    static constexpr std::size_t kUnits = 4 * kBlock;

    BRN_AVX512 explicit Group(std::uint16_t const* inText) noexcept
        : first(Load(inText)), second(Load(inText + kBlock)), third(Load(inText + 2 * kBlock)),
          fourth(Load(inText + 3 * kBlock)) {}

    BRN_AVX512 bool HasNone(Pattern32 const& inBits) const noexcept {
        return HaveAny(Union(first, second, third, fourth), inBits) == 0;
    }

    BRN_AVX512 bool HasNul() const noexcept {
        __m512i const least =
            _mm512_min_epu16(_mm512_min_epu16(first, second), _mm512_min_epu16(third, fourth));
        return _mm512_testn_epi16_mask(least, least) != 0;
    }

    // No array, whose blocks would be written to memory and read again.
    __m512i first, second, third, fourth;
};

/// Sums up the encoded size of a text, block by block.
class Meter {
public:
    BRN_AVX512 void AddASCII(std::size_t inUnits) noexcept {
        mBytes += inUnits;
        mHighBefore = 0;
    }

    BRN_AVX512 void AddUpToTwoBytes(__m512i inBlock) noexcept {
        mBytes += kBlock + CountBits(HaveAny(inBlock, kEncode.notASCII));
        mHighBefore = 0;
    }

    /// Adds the first `inUnits` of a block of any kind, of which the others are NUL.
    BRN_AVX512 void AddAny(__m512i inBlock, std::size_t inUnits) noexcept {
        __mmask32 const high = AreOfKind(inBlock, kEncode.high);
        // A pair takes two bytes less than its two units would take by themselves.
        __mmask32 const pairs = (high << 1 | mHighBefore) & AreOfKind(inBlock, kEncode.low);
        mBytes += inUnits + CountBits(HaveAny(inBlock, kEncode.notASCII)) +
                  CountBits(HaveAny(inBlock, kEncode.notTwoBytes)) - 2 * CountBits(pairs);
        mHighBefore = high >> 31;
    }

    std::size_t Bytes() const noexcept { return mBytes; }

private:
    std::size_t mBytes = 0;
    std::uint32_t mHighBefore = 0; // 1 if the last unit was a high surrogate
};

} // namespace

UTF16Extent MeasureUTF16(std::uint16_t const* inText, std::size_t inCount) noexcept {
    Meter meter;
    std::size_t done = 0;
    for (; inCount - done >= Group::kUnits; done += Group::kUnits) {
        Group const group(inText + done);
        if (group.HasNul()) {
            break;
        }
        if (group.HasNone(kEncode.notASCII)) {
            meter.AddASCII(Group::kUnits);
        } else if (group.HasNone(kEncode.notTwoBytes)) {
            meter.AddUpToTwoBytes(group.first);
            meter.AddUpToTwoBytes(group.second);
            meter.AddUpToTwoBytes(group.third);
            meter.AddUpToTwoBytes(group.fourth);
        } else {
            meter.AddAny(group.first, kBlock);
            meter.AddAny(group.second, kBlock);
            meter.AddAny(group.third, kBlock);
            meter.AddAny(group.fourth, kBlock);
        }
    }
    while (done != inCount) {
        std::size_t const count = std::min(inCount - done, kBlock);
        __m512i const units = LoadUpToBlock(inText + done, count);
        std::uint64_t const ends = _mm512_testn_epi16_mask(units, units) | std::uint64_t{1}
                                                                               << count;
        std::size_t const beforeNul = _tzcnt_u64(ends);
        if (beforeNul != count) {
            auto const isBefore = static_cast<__mmask32>(LowBits(beforeNul));
            meter.AddAny(_mm512_maskz_mov_epi16(isBefore, units), beforeNul);
            return {done + beforeNul, meter.Bytes()};
        }
        meter.AddAny(units, count);
        done += count;
    }
    return {done, meter.Bytes()};
}

std::size_t EncodeUTF8(std::uint16_t const* inText, std::size_t inCount,
                       std::uint8_t* outBytes) noexcept {
    std::uint8_t* bytes = outBytes;
    std::size_t done = 0;
    __m512i previous = _mm512_setzero_si512();
    // There is one unit more than the group, so that a pair across the group's end is recognised.
    for (; inCount - done > Group::kUnits; done += Group::kUnits) {
        std::uint16_t const* const text = inText + done;
        Group const group(text);
        if (group.HasNone(kEncode.notASCII)) {
            __m512i const places = Load(kEncode.lowBytes);
            Store(bytes, _mm512_permutex2var_epi8(group.first, places, group.second));
            Store(bytes + 2 * kBlock, _mm512_permutex2var_epi8(group.third, places, group.fourth));
            bytes += Group::kUnits;
        } else if (group.HasNone(kEncode.notTwoBytes)) {
            bytes = EncodeUpToTwoBytes(group.first, bytes);
            bytes = EncodeUpToTwoBytes(group.second, bytes);
            bytes = EncodeUpToTwoBytes(group.third, bytes);
            bytes = EncodeUpToTwoBytes(group.fourth, bytes);
        } else {
            for (std::size_t i = 0; i < Group::kUnits; i += kBlock) {
                __m512i const units = Load(text + i);
                bytes =
                    AreThreeBytes(units)
                        ? EncodeThreeBytes(units, bytes)
                        : EncodeAny(MakeWindow(previous, units, Load(text + i + 1)), kBlock, bytes);
                previous = units;
            }
        }
        previous = group.fourth;
    }
    while (done != inCount) {
        std::uint16_t const* const text = inText + done;
        std::size_t const left = inCount - done;
        std::size_t const count = std::min(left, kBlock);
        __m512i const units = LoadUpToBlock(text, count);
        // Each NUL that fills up a partial block produces a byte, which is taken back.
        if (HaveAny(units, kEncode.notASCII) == 0) {
            bytes = EncodeASCII(units, bytes) - (kBlock - count);
        } else if (HaveAny(units, kEncode.notTwoBytes) == 0) {
            bytes = EncodeUpToTwoBytes(units, bytes) - (kBlock - count);
        } else {
            std::size_t const encoded = count > kBlock / 2 ? kBlock : kBlock / 2;
            __m512i const behind = LoadUpToBlock(text + 1, left - 1);
            bytes =
                EncodeAny(MakeWindow(previous, units, behind), count, bytes) - (encoded - count);
        }
        previous = units;
        done += count;
    }
    return static_cast<std::size_t>(bytes - outBytes);
}

} // namespace brindle::utility::impl::avx512

#endif
