#include "utility/src/UnicodeAvx2.h"

#if defined(__x86_64__)

#include <brindle/utility/Unicode.h>

namespace brindle::utility::impl::avx2 {
namespace {

constexpr std::size_t kBlock = 16;

/// Index: the bits of the lanes that are ASCII. A lane of two bytes keeps its first, and its second
/// unless it is ASCII.
constexpr ByteShuffles MakeTwoByteShuffles() {
    ByteShuffles shuffles{};
    for (unsigned ascii = 0; ascii < 256; ++ascii) {
        unsigned kept = 0;
        for (unsigned lane = 0; lane < 8; ++lane) {
            shuffles[ascii].bytes[kept++] = static_cast<std::uint8_t>(2 * lane);
            if ((ascii >> lane & 1) == 0)
                shuffles[ascii].bytes[kept++] = static_cast<std::uint8_t>(2 * lane + 1);
        }
    }
    return shuffles;
}

/// Index: two bits a lane, the lower set from two bytes on, the upper from three on. A lane of four
/// bytes holds the second byte from the end, the last one, and the third from the end.
constexpr ByteShuffles MakeThreeByteShuffles() {
    ByteShuffles shuffles{};
    for (unsigned sizes = 0; sizes < 256; ++sizes) {
        unsigned kept = 0;
        for (unsigned lane = 0; lane < 4; ++lane) {
            if ((sizes >> 2 * lane & 2) != 0)
                shuffles[sizes].bytes[kept++] = static_cast<std::uint8_t>(4 * lane + 2);
            if ((sizes >> 2 * lane & 1) != 0)
                shuffles[sizes].bytes[kept++] = static_cast<std::uint8_t>(4 * lane);
            shuffles[sizes].bytes[kept++] = static_cast<std::uint8_t>(4 * lane + 1);
        }
    }
    return shuffles;
}

constexpr ByteShuffles kTwoByteShuffles = MakeTwoByteShuffles();
constexpr ByteShuffles kThreeByteShuffles = MakeThreeByteShuffles();

BRN_AVX2 inline __m256i Splat(int inBits) noexcept {
    return _mm256_set1_epi16(static_cast<short>(inBits));
}

/// All bits of a lane if the unit is below two to the power of `kBits`.
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

/// The two last bytes of each unit's sequence, in order, told for sequences of two bytes.
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

/// A block of units, each as the bytes of its sequence.
struct Sequences {
    __m256i lastTwo;  ///< the two last bytes; for ASCII the upper one alone
    __m256i isASCII;  ///< lanes of one byte
    __m256i isBelow3; ///< lanes of one byte or two
};

/// Makes the halves of each pair sequences of two bytes: together they are the four of the pair.
/// `inPrevious` is the unit before the block, and one unit behind the block can be read.
BRN_AVX2 inline void EncodePairs(std::uint16_t const* inBlock, std::uint16_t inPrevious,
                                 Sequences& ioSequences) noexcept {
    __m256i const units = Load(inBlock);
    __m256i const nextUnits = Load(inBlock + 1);
    __m256i const lowerHalfUp = _mm256_permute2x128_si256(units, units, 0x08);
    __m256i const previousUnits = _mm256_insert_epi16(_mm256_alignr_epi8(units, lowerHalfUp, 14),
                                                      static_cast<short>(inPrevious), 0);
    __m256i const isFirst =
        _mm256_and_si256(IsSurrogateOf(units, 0xD800), IsSurrogateOf(nextUnits, 0xDC00));
    __m256i const isSecond =
        _mm256_and_si256(IsSurrogateOf(units, 0xDC00), IsSurrogateOf(previousUnits, 0xD800));

    // The value's bits from the tenth up are all in the first unit; its sequence starts with them.
    __m256i const upper = _mm256_add_epi16(_mm256_and_si256(units, Splat(0x03FF)), Splat(0x0040));
    __m256i const first =
        _mm256_or_si256(_mm256_or_si256(_mm256_srli_epi16(upper, 8), Splat(0x80F0)),
                        _mm256_and_si256(_mm256_slli_epi16(upper, 6), Splat(0x3F00)));
    __m256i const carried = _mm256_and_si256(_mm256_slli_epi16(previousUnits, 4), Splat(0x0030));
    __m256i const own = _mm256_and_si256(_mm256_srli_epi16(units, 6), Splat(0x000F));
    __m256i const last = _mm256_and_si256(_mm256_slli_epi16(units, 8), Splat(0x3F00));
    __m256i const second =
        _mm256_or_si256(_mm256_or_si256(carried, own), _mm256_or_si256(last, Splat(0x8080)));

    ioSequences.lastTwo = _mm256_blendv_epi8(ioSequences.lastTwo, first, isFirst);
    ioSequences.lastTwo = _mm256_blendv_epi8(ioSequences.lastTwo, second, isSecond);
    ioSequences.isBelow3 =
        _mm256_or_si256(ioSequences.isBelow3, _mm256_or_si256(isFirst, isSecond));
}

/// Encodes 16 units of any kind. `inPrevious` is the unit before them, and one unit behind them can
/// be read. The first unit of a pair at the end gives its half of the pair's bytes.
BRN_AVX2 inline std::uint8_t* EncodeAny(std::uint16_t const* inBlock, std::uint16_t inPrevious,
                                        std::uint8_t* outBytes) noexcept {
    __m256i const units = Load(inBlock);
    Sequences sequences;
    sequences.isASCII = IsBelowPowerOf2<7>(units);
    sequences.isBelow3 = IsBelowPowerOf2<11>(units);
    // With three bytes the second from the end is a trailing one.
    __m256i const notLead = _mm256_andnot_si256(sequences.isBelow3, Splat(0x0040));
    sequences.lastTwo = _mm256_blendv_epi8(_mm256_andnot_si256(notLead, TwoBytes(units)),
                                           _mm256_slli_epi16(units, 8), sequences.isASCII);
    __m256i const isSurrogate =
        _mm256_cmpeq_epi16(_mm256_and_si256(units, Splat(0xF800)), Splat(0xD800));
    if (_mm256_testz_si256(isSurrogate, isSurrogate) == 0)
        EncodePairs(inBlock, inPrevious, sequences);

    __m256i const third = _mm256_or_si256(_mm256_srli_epi16(units, 12), Splat(0x00E0));
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

} // namespace

UTF16Extent MeasureUTF16(std::uint16_t const* inText, std::size_t inCount) noexcept {
    __m256i const zero = _mm256_setzero_si256();
    std::size_t done = 0;
    std::size_t bytes = 0;
    std::uint32_t highBefore = 0;
    while (inCount - done >= 2 * kBlock) {
        __m256i const first = Load(inText + done);
        __m256i const second = Load(inText + done + kBlock);
        if (TopBits(_mm256_cmpeq_epi16(_mm256_min_epu16(first, second), zero)) != 0)
            break;
        if (AreBelow(_mm256_or_si256(first, second), 0x80)) {
            done += 2 * kBlock;
            bytes += 2 * kBlock;
            highBefore = 0;
            continue;
        }
        for (__m256i const units : {first, second}) {
            std::uint32_t const sizes = ~TopBits(_mm256_blendv_epi8(
                IsBelowPowerOf2<7>(units), IsBelowPowerOf2<11>(units), Splat(0xFF00)));
            // Two bits a unit: those of a pair's second unit are the two bytes that a pair saves.
            std::uint32_t const high = TopBits(IsSurrogateOf(units, 0xD800));
            std::uint32_t const low = TopBits(IsSurrogateOf(units, 0xDC00));
            bytes += kBlock + CountBits(sizes) - CountBits((high << 2 | highBefore) & low);
            highBefore = high >> 30;
        }
        done += 2 * kBlock;
    }
    UTF16Extent const rest = kPortableUnicodeKernels.MeasureUTF16(inText + done, inCount - done);
    if (highBefore != 0 && rest.units != 0 && UnicodeSurrogate(inText[done]) == kSurrogate_Low)
        bytes -= 2;
    return {done + rest.units, bytes + rest.bytes};
}

std::size_t EncodeUTF8(std::uint16_t const* inText, std::size_t inCount,
                       std::uint8_t* outBytes) noexcept {
    std::uint8_t* bytes = outBytes;
    std::size_t done = 0;
    // One unit more than a block, so that a pair across its end is seen.
    while (inCount - done > kBlock) {
        std::uint16_t const* const block = inText + done;
        __m256i const units = Load(block);
        if (AreBelow(units, 0x80)) {
            __m256i const packed = _mm256_packus_epi16(units, units);
            _mm_storeu_si128(reinterpret_cast<__m128i_u*>(bytes),
                             LowHalf(_mm256_permute4x64_epi64(packed, 0x08)));
            bytes += kBlock;
        } else if (AreBelow(units, 0x800)) {
            bytes = EncodeUpToTwoBytes(units, bytes);
        } else {
            bytes = EncodeAny(block, done != 0 ? block[-1] : std::uint16_t{0}, bytes);
        }
        done += kBlock;
    }
    if (done != 0 && UnicodeSurrogate(inText[done - 1]) == kSurrogate_High && done != inCount &&
        UnicodeSurrogate(inText[done]) == kSurrogate_Low) {
        // The pair is encoded by halves, and the rest starts with whole ones.
        --done;
        bytes -= 2;
    }
    bytes += kPortableUnicodeKernels.EncodeUTF8(inText + done, inCount - done, bytes);
    return static_cast<std::size_t>(bytes - outBytes);
}

} // namespace brindle::utility::impl::avx2

#endif
