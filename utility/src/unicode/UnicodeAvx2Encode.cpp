#include "utility/src/unicode/UnicodeAvx2.h"

#if defined(__x86_64__)

#include <algorithm>

namespace brindle::utility::impl::avx2 {
namespace {

constexpr std::size_t kBlock = 16;

BRN_AVX2 inline __m256i Splat(int inBits) noexcept {
    return _mm256_set1_epi16(static_cast<short>(inBits));
}

constexpr std::uint16_t kLaneNumbers[kBlock] = {0, 1, 2,  3,  4,  5,  6,  7,
                                                8, 9, 10, 11, 12, 13, 14, 15};
constexpr std::uint32_t kLanePairNumbers[kBlock / 2] = {0, 1, 2, 3, 4, 5, 6, 7};

/// Loads the `inCount` units at `inText`, 1 to 16, followed by NULs. A masked load reads pairs of
/// units, so an odd last unit is inserted separately.
BRN_AVX2 inline __m256i LoadUpToBlock(std::uint16_t const* inText, std::size_t inCount) noexcept {
    if (inCount == kBlock) {
        return Load(inText);
    }
    auto const count = static_cast<int>(inCount);
    __m256i const isWholePair =
        _mm256_cmpgt_epi32(_mm256_set1_epi32(count / 2), Load(kLanePairNumbers));
    __m256i const pairs = _mm256_maskload_epi32(
        static_cast<int const*>(static_cast<void const*>(inText)), isWholePair);
    __m256i const isLast = _mm256_cmpeq_epi16(Splat(count - 1), Load(kLaneNumbers));
    return _mm256_blendv_epi8(pairs, Splat(inText[inCount - 1]), isLast);
}

/// 0xFFFF for each unit below two to the power of `kBits`, 0 for the others.
template <int kBits>
BRN_AVX2 inline __m256i IsBelowPowerOf2(__m256i inUnits) noexcept {
    return _mm256_cmpeq_epi16(_mm256_srli_epi16(inUnits, kBits), _mm256_setzero_si256());
}

BRN_AVX2 inline bool AreBelow(__m256i inUnits, int inLimit) noexcept {
    return _mm256_testz_si256(inUnits, Splat(-inLimit)) != 0;
}

BRN_AVX2 inline __m256i IsSurrogateOf(__m256i inUnits, int inFirst) noexcept {
    return _mm256_cmpeq_epi16(_mm256_and_si256(inUnits, Splat(0xFC00)), Splat(inFirst));
}

/// Each unit as a sequence of two bytes.
BRN_AVX2 inline __m256i TwoBytes(__m256i inUnits) noexcept {
    __m256i const first = _mm256_and_si256(_mm256_srli_epi16(inUnits, 6), Splat(0x003F));
    __m256i const second = _mm256_and_si256(_mm256_slli_epi16(inUnits, 8), Splat(0x3F00));
    return _mm256_or_si256(_mm256_or_si256(first, second), Splat(0x80C0));
}

/// Encodes 16 units below 0x800.
BRN_AVX2 inline std::uint8_t* EncodeUpToTwoBytes(__m256i inUnits, std::uint8_t* outBytes) noexcept {
    __m256i const isASCII = IsBelowPowerOf2<7>(inUnits);
    __m256i const bytes = _mm256_blendv_epi8(TwoBytes(inUnits), inUnits, isASCII);
    std::uint32_t const ascii = TopBits(_mm256_packs_epi16(isASCII, isASCII));
    std::uint32_t const low = ascii & 0xFF;
    std::uint32_t const high = ascii >> 24;
    StoreShuffled(outBytes, LowHalf(bytes), kTwoByteShuffles[low]);
    outBytes += 16 - CountBits(low);
    StoreShuffled(outBytes, HighHalf(bytes), kTwoByteShuffles[high]);
    return outBytes + 16 - CountBits(high);
}

/// The sequences of a block of units, but for the first bytes of those of three. In the masks a
/// lane is 0xFFFF or 0.
struct Sequences {
    __m256i lastTwo;  ///< the last two bytes; for ASCII the upper byte is the sequence
    __m256i isASCII;  ///< the sequence has one byte
    __m256i isBelow3; ///< the sequence has one byte or two
};

/// Replaces the two units of each surrogate pair by sequences of two bytes, which together are the
/// four bytes of the pair.
BRN_AVX2 inline void EncodePairs(__m256i inUnits, std::uint16_t inUnitBefore,
                                 std::uint16_t inUnitBehind, Sequences& ioSequences) noexcept {
    __m256i const lowHalfUp = _mm256_permute2x128_si256(inUnits, inUnits, 0x08);
    __m256i const previousUnits = _mm256_insert_epi16(_mm256_alignr_epi8(inUnits, lowHalfUp, 14),
                                                      static_cast<short>(inUnitBefore), 0);
    __m256i const highHalfDown = _mm256_permute2x128_si256(inUnits, inUnits, 0x81);
    __m256i const nextUnits = _mm256_insert_epi16(_mm256_alignr_epi8(highHalfDown, inUnits, 2),
                                                  static_cast<short>(inUnitBehind), 15);
    __m256i const isFirst =
        _mm256_and_si256(IsSurrogateOf(inUnits, 0xD800), IsSurrogateOf(nextUnits, 0xDC00));
    __m256i const isSecond =
        _mm256_and_si256(IsSurrogateOf(inUnits, 0xDC00), IsSurrogateOf(previousUnits, 0xD800));

    // The first unit holds the upper bits of the code point, less 0x10000, which adding 0x40
    // restores. They become the first two bytes, but for the lowest two, which go to the third
    // byte.
    __m256i const upper = _mm256_add_epi16(_mm256_and_si256(inUnits, Splat(0x03FF)), Splat(0x0040));
    __m256i const first =
        _mm256_or_si256(_mm256_or_si256(_mm256_srli_epi16(upper, 8), Splat(0x80F0)),
                        _mm256_and_si256(_mm256_slli_epi16(upper, 6), Splat(0x3F00)));
    __m256i const carried = _mm256_and_si256(_mm256_slli_epi16(previousUnits, 4), Splat(0x0030));
    __m256i const own = _mm256_and_si256(_mm256_srli_epi16(inUnits, 6), Splat(0x000F));
    __m256i const last = _mm256_and_si256(_mm256_slli_epi16(inUnits, 8), Splat(0x3F00));
    __m256i const second =
        _mm256_or_si256(_mm256_or_si256(carried, own), _mm256_or_si256(last, Splat(0x8080)));

    ioSequences.lastTwo = _mm256_blendv_epi8(ioSequences.lastTwo, first, isFirst);
    ioSequences.lastTwo = _mm256_blendv_epi8(ioSequences.lastTwo, second, isSecond);
    ioSequences.isBelow3 =
        _mm256_or_si256(ioSequences.isBelow3, _mm256_or_si256(isFirst, isSecond));
}

/// Encodes 16 units of any kind. Of a surrogate pair across the border of the block, only the two
/// bytes for the unit in the block are written.
BRN_AVX2 inline std::uint8_t* EncodeAny(__m256i inUnits, std::uint16_t inUnitBefore,
                                        std::uint16_t inUnitBehind,
                                        std::uint8_t* outBytes) noexcept {
    Sequences sequences;
    sequences.isASCII = IsBelowPowerOf2<7>(inUnits);
    sequences.isBelow3 = IsBelowPowerOf2<11>(inUnits);
    // In sequences of three bytes the second last byte is a trailing byte and not a lead.
    __m256i const notLead = _mm256_andnot_si256(sequences.isBelow3, Splat(0x0040));
    sequences.lastTwo = _mm256_blendv_epi8(_mm256_andnot_si256(notLead, TwoBytes(inUnits)),
                                           _mm256_slli_epi16(inUnits, 8), sequences.isASCII);
    __m256i const isSurrogate =
        _mm256_cmpeq_epi16(_mm256_and_si256(inUnits, Splat(0xF800)), Splat(0xD800));
    if (_mm256_testz_si256(isSurrogate, isSurrogate) == 0) {
        EncodePairs(inUnits, inUnitBefore, inUnitBehind, sequences);
    }

    __m256i const third = _mm256_or_si256(_mm256_srli_epi16(inUnits, 12), Splat(0x00E0));
    __m256i const even = _mm256_unpacklo_epi16(sequences.lastTwo, third);
    __m256i const odd = _mm256_unpackhi_epi16(sequences.lastTwo, third);
    std::uint32_t const sizes =
        ~TopBits(_mm256_blendv_epi8(sequences.isASCII, sequences.isBelow3, Splat(0xFF00)));

    std::uint32_t const size0 = sizes & 0xFF;
    std::uint32_t const size1 = sizes >> 8 & 0xFF;
    std::uint32_t const size2 = sizes >> 16 & 0xFF;
    std::uint32_t const size3 = sizes >> 24;
    StoreShuffled(outBytes, LowHalf(even), kThreeByteShuffles[size0]);
    StoreShuffled(outBytes + 4 + CountBits(size0), LowHalf(odd), kThreeByteShuffles[size1]);
    outBytes += 8 + CountBits(sizes & 0xFFFF);
    StoreShuffled(outBytes, HighHalf(even), kThreeByteShuffles[size2]);
    StoreShuffled(outBytes + 4 + CountBits(size2), HighHalf(odd), kThreeByteShuffles[size3]);
    return outBytes + 8 + CountBits(sizes >> 16);
}

/// Encodes 16 units below 0x80.
BRN_AVX2 inline std::uint8_t* EncodeASCII(__m256i inUnits, std::uint8_t* outBytes) noexcept {
    __m256i const packed = _mm256_packus_epi16(inUnits, inUnits);
    _mm_storeu_si128(reinterpret_cast<__m128i_u*>(outBytes),
                     LowHalf(_mm256_permute4x64_epi64(packed, 0x08)));
    return outBytes + kBlock;
}

/// Four blocks whose kind is tested once, so that there is one branch for four blocks in text of
/// one script.
struct Group {
    static constexpr std::size_t kUnits = 4 * kBlock;

    BRN_AVX2 explicit Group(std::uint16_t const* inText) noexcept
        : blocks{Load(inText), Load(inText + kBlock), Load(inText + 2 * kBlock),
                 Load(inText + 3 * kBlock)} {}

    BRN_AVX2 bool IsBelow(int inLimit) const noexcept {
        return AreBelow(_mm256_or_si256(_mm256_or_si256(blocks[0], blocks[1]),
                                        _mm256_or_si256(blocks[2], blocks[3])),
                        inLimit);
    }

    BRN_AVX2 bool HasNul() const noexcept {
        __m256i const least = _mm256_min_epu16(_mm256_min_epu16(blocks[0], blocks[1]),
                                               _mm256_min_epu16(blocks[2], blocks[3]));
        return TopBits(_mm256_cmpeq_epi16(least, _mm256_setzero_si256())) != 0;
    }

    __m256i blocks[4];
};

/// Sums up the encoded size of a text, block by block.
class Meter {
public:
    BRN_AVX2 void AddASCII(std::size_t inUnits) noexcept {
        mBytes += inUnits;
        mHighBefore = 0;
    }

    BRN_AVX2 void AddUpToTwoBytes(Group const& inGroup) noexcept {
        __m256i const first = _mm256_packs_epi16(IsBelowPowerOf2<7>(inGroup.blocks[0]),
                                                 IsBelowPowerOf2<7>(inGroup.blocks[1]));
        __m256i const second = _mm256_packs_epi16(IsBelowPowerOf2<7>(inGroup.blocks[2]),
                                                  IsBelowPowerOf2<7>(inGroup.blocks[3]));
        mBytes += 2 * Group::kUnits - CountBits(TopBits(first)) - CountBits(TopBits(second));
        mHighBefore = 0;
    }

    /// Adds the first `inUnits` of a block of any kind.
    BRN_AVX2 void AddAny(__m256i inBlock, std::size_t inUnits) noexcept {
        // All masks have two bits for each unit.
        std::uint32_t const counted =
            static_cast<std::uint32_t>((std::uint64_t{1} << 2 * inUnits) - 1);
        std::uint32_t const sizes = ~TopBits(_mm256_blendv_epi8(
            IsBelowPowerOf2<7>(inBlock), IsBelowPowerOf2<11>(inBlock), Splat(0xFF00)));
        std::uint32_t const high = TopBits(IsSurrogateOf(inBlock, 0xD800));
        std::uint32_t const low = TopBits(IsSurrogateOf(inBlock, 0xDC00));
        // A pair takes two bytes less than its two units would take by themselves.
        std::uint32_t const seconds = (high << 2 | mHighBefore) & low;
        mBytes += inUnits + CountBits(sizes & counted) - CountBits(seconds & counted);
        mHighBefore = high >> 30;
    }

    std::size_t Bytes() const noexcept { return mBytes; }

private:
    std::size_t mBytes = 0;
    std::uint32_t mHighBefore = 0; // both lower bits are set if the last unit was a high surrogate
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
        if (group.IsBelow(0x80)) {
            meter.AddASCII(Group::kUnits);
        } else if (group.IsBelow(0x800)) {
            meter.AddUpToTwoBytes(group);
        } else {
            for (__m256i const block : group.blocks) {
                meter.AddAny(block, kBlock);
            }
        }
    }
    while (done != inCount) {
        std::size_t const count = std::min(inCount - done, kBlock);
        __m256i const units = LoadUpToBlock(inText + done, count);
        std::uint32_t const nuls = TopBits(_mm256_cmpeq_epi16(units, _mm256_setzero_si256()));
        std::size_t const beforeNul = CountBits(~nuls & (nuls - 1)) / 2;
        meter.AddAny(units, beforeNul);
        done += beforeNul;
        if (beforeNul != count) {
            break;
        }
    }
    return {done, meter.Bytes()};
}

std::size_t EncodeUTF8(std::uint16_t const* inText, std::size_t inCount,
                       std::uint8_t* outBytes) noexcept {
    std::uint8_t* bytes = outBytes;
    std::size_t done = 0;
    std::uint16_t unitBefore = 0;
    // There is one unit more than the group, so that a pair across the group's end is recognised.
    for (; inCount - done > Group::kUnits; done += Group::kUnits) {
        Group const group(inText + done);
        if (group.IsBelow(0x80)) {
            for (__m256i const block : group.blocks) {
                bytes = EncodeASCII(block, bytes);
            }
        } else if (group.IsBelow(0x800)) {
            for (__m256i const block : group.blocks) {
                bytes = EncodeUpToTwoBytes(block, bytes);
            }
        } else {
            std::uint16_t const* block = inText + done;
            for (__m256i const units : group.blocks) {
                bytes = EncodeAny(units, unitBefore, block[kBlock], bytes);
                unitBefore = block[kBlock - 1];
                block += kBlock;
            }
        }
        unitBefore = inText[done + Group::kUnits - 1];
    }
    while (done != inCount) {
        std::size_t const count = std::min(inCount - done, kBlock);
        __m256i const units = LoadUpToBlock(inText + done, count);
        std::uint16_t const unitBehind =
            inCount - done > kBlock ? inText[done + kBlock] : std::uint16_t{0};
        bytes = AreBelow(units, 0x80)    ? EncodeASCII(units, bytes)
                : AreBelow(units, 0x800) ? EncodeUpToTwoBytes(units, bytes)
                                         : EncodeAny(units, unitBefore, unitBehind, bytes);
        // Each NUL that fills up a partial block has produced a byte.
        bytes -= kBlock - count;
        unitBefore = inText[done + count - 1];
        done += count;
    }
    return static_cast<std::size_t>(bytes - outBytes);
}

} // namespace brindle::utility::impl::avx2

#endif
