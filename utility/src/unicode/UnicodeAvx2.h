#pragma once

#include "utility/src/unicode/UnicodeKernels.h"
#include "utility/src/unicode/UnicodeShuffles.h"

#include <cstddef>
#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>

/// Compiles one function for AVX2, although the rest of the library is compiled for any processor.
#define BRN_AVX2 __attribute__((target("avx2,popcnt")))

namespace brindle::utility::impl::avx2 {

BRN_AVX2 UTF16Extent MeasureUTF16(std::uint16_t const* inText, std::size_t inCount) noexcept;
BRN_AVX2 std::size_t EncodeUTF8(std::uint16_t const* inText, std::size_t inCount,
                                std::uint8_t* outBytes) noexcept;
BRN_AVX2 std::size_t CountUTF16(std::uint8_t const* inText, std::size_t inCount) noexcept;
BRN_AVX2 UnicodeProgress DecodeUTF8(std::uint8_t const* inText, std::size_t inCount,
                                    std::uint16_t* outUnits) noexcept;

BRN_AVX2 inline __m256i Load(void const* inFrom) noexcept {
    return _mm256_loadu_si256(static_cast<__m256i_u const*>(inFrom));
}

BRN_AVX2 inline void Store(void* outTo, __m256i inValue) noexcept {
    _mm256_storeu_si256(static_cast<__m256i_u*>(outTo), inValue);
}

/// The top bit of each byte, the first byte's in the lowest bit.
BRN_AVX2 inline std::uint32_t TopBits(__m256i inBytes) noexcept {
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(inBytes));
}

BRN_AVX2 inline std::size_t CountBits(std::uint32_t inBits) noexcept {
    return static_cast<std::size_t>(_mm_popcnt_u32(inBits));
}

/// Stores the bytes of `inValue` in the order that `inShuffle` gives.
BRN_AVX2 inline void StoreShuffled(void* outTo, __m128i inValue,
                                   ByteShuffle const& inShuffle) noexcept {
    __m128i const order = _mm_load_si128(reinterpret_cast<__m128i const*>(inShuffle.bytes));
    _mm_storeu_si128(static_cast<__m128i_u*>(outTo), _mm_shuffle_epi8(inValue, order));
}

BRN_AVX2 inline __m128i LowHalf(__m256i inValue) noexcept {
    return _mm256_castsi256_si128(inValue);
}

BRN_AVX2 inline __m128i HighHalf(__m256i inValue) noexcept {
    return _mm256_extracti128_si256(inValue, 1);
}

} // namespace brindle::utility::impl::avx2

#endif
