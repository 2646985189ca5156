#pragma once

#include "utility/src/unicode/UnicodeAvx512Operands.h"
#include "utility/src/unicode/UnicodeKernels.h"

#include <cstddef>
#include <cstdint>

#if defined(__x86_64__)
#if defined(__GNUC__) && !defined(__clang__)
// GCC 12 warns of the operands that its own intrinsics leave undefined.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
#include <immintrin.h>
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

/// Compiles one function for AVX-512 with VBMI2, although the rest of the library is compiled for
/// any processor.
#define BRN_AVX512                                                                                 \
    __attribute__((target("avx512f,avx512bw,avx512dq,avx512vl,avx512vbmi,avx512vbmi2,"             \
                          "bmi,bmi2,popcnt")))

namespace brindle::utility::impl::avx512 {

BRN_AVX512 UTF16Extent MeasureUTF16(std::uint16_t const* inText, std::size_t inCount) noexcept;
BRN_AVX512 std::size_t EncodeUTF8(std::uint16_t const* inText, std::size_t inCount,
                                  std::uint8_t* outBytes) noexcept;
BRN_AVX512 std::size_t CountUTF16(std::uint8_t const* inText, std::size_t inCount) noexcept;
BRN_AVX512 UnicodeProgress DecodeUTF8(std::uint8_t const* inText, std::size_t inCount,
                                      std::uint16_t* outUnits) noexcept;

BRN_AVX512 inline __m512i Load(void const* inFrom) noexcept {
    return _mm512_loadu_si512(inFrom);
}

BRN_AVX512 inline void Store(void* outTo, __m512i inValue) noexcept {
    _mm512_storeu_si512(outTo, inValue);
}

BRN_AVX512 inline __m512i Splat(Pattern32 const& inPattern) noexcept {
    return _mm512_set1_epi32(static_cast<int>(inPattern));
}

BRN_AVX512 inline __m512i Splat(Pattern64 const& inPattern) noexcept {
    return _mm512_set1_epi64(static_cast<long long>(inPattern));
}

/// The bits of `inSet` where those of `inSelector` are set, and of `inClear` elsewhere.
BRN_AVX512 inline __m512i Select(__m512i inSelector, __m512i inSet, __m512i inClear) noexcept {
    return _mm512_ternarylogic_epi64(inSelector, inSet, inClear, 0xCA);
}

/// The bits that any of four vectors has.
BRN_AVX512 inline __m512i Union(__m512i inA, __m512i inB, __m512i inC, __m512i inD) noexcept {
    return _mm512_ternarylogic_epi64(_mm512_or_si512(inA, inB), inC, inD, 0xFE);
}

/// The lowest `inCount` bits, at most 63 of them.
BRN_AVX512 inline std::uint64_t LowBits(std::size_t inCount) noexcept {
    return (std::uint64_t{1} << inCount) - 1;
}

BRN_AVX512 inline std::size_t CountBits(std::uint64_t inBits) noexcept {
    return static_cast<std::size_t>(_mm_popcnt_u64(inBits));
}

} // namespace brindle::utility::impl::avx512

#endif
