#include "filesupport/src/streams/CRC32.h"

#include <array>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace brindle::filesupport {

namespace {

/// The polynomial without its leading term. All values are bit-reflected: the lowest bit is the
/// coefficient of the highest power of x.
constexpr std::uint32_t Polynomial() {
    std::uint32_t polynomial = 0;
    for (int const exponent : {0, 1, 2, 4, 5, 7, 8, 10, 11, 12, 16, 22, 23, 26}) {
        polynomial |= std::uint32_t{1} << (31 - exponent);
    }
    return polynomial;
}

constexpr std::uint32_t kPolynomial = Polynomial();

/// The product of `inValue` and x to the power `inPower`, modulo the polynomial.
constexpr std::uint32_t TimesPowerOfX(std::uint32_t inValue, unsigned inPower) {
    for (; inPower != 0; --inPower) {
        inValue = (inValue >> 1) ^ ((inValue & 1) != 0 ? kPolynomial : 0);
    }
    return inValue;
}

/// `kTables[k][b]` is the change to the register by a byte b that is followed by k zero bytes.
using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr Tables MakeTables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        tables[0][byte] = TimesPowerOfX(byte, 8);
        for (std::size_t k = 1; k < tables.size(); ++k) {
            auto const before = tables[k - 1][byte];
            tables[k][byte] = (before >> 8) ^ TimesPowerOfX(before & 0xFF, 8);
        }
    }
    return tables;
}

constexpr Tables kTables = MakeTables();

constexpr std::uint32_t LoadLittleEndian(std::uint8_t const* inData) {
    return std::uint32_t{inData[0]} | std::uint32_t{inData[1]} << 8 |
           std::uint32_t{inData[2]} << 16 | std::uint32_t{inData[3]} << 24;
}

#if defined(__x86_64__)

constexpr std::size_t kFoldedAtOnce = 64;

/// The multiplier that advances 64 bits by `inPower` bits. The product of reflected values is one
/// bit too low, which the shift corrects.
constexpr long long FoldMultiplier(unsigned inPower) {
    return static_cast<long long>(std::uint64_t{TimesPowerOfX(0x80000000, inPower)} << 1);
}

/// The sum of `inData` and of `inLane`, advanced by the distance of the multipliers.
__attribute__((target("pclmul,sse4.1"), always_inline)) inline __m128i
Fold(__m128i inLane, __m128i inData, __m128i inMultipliers) {
    auto const low = _mm_clmulepi64_si128(inLane, inMultipliers, 0x00);
    auto const high = _mm_clmulepi64_si128(inLane, inMultipliers, 0x11);
    return _mm_xor_si128(_mm_xor_si128(low, high), inData);
}

__attribute__((target("pclmul,sse4.1"), always_inline)) inline __m128i
Load(std::uint8_t const* inData) {
    return _mm_loadu_si128(reinterpret_cast<__m128i const*>(inData));
}

/// Folds the data into four lanes of 128 bits, and these into one, which is a message of 16 bytes
/// with the same remainder as the data. `inSize` is at least `kFoldedAtOnce`.
__attribute__((target("pclmul,sse4.1"))) std::uint32_t
UpdateByFolding(std::uint32_t inRegister, std::uint8_t const* inData, std::size_t inSize) noexcept {
    auto const overFourLanes = _mm_set_epi64x(FoldMultiplier(512 - 32), FoldMultiplier(512 + 32));
    auto const overOneLane = _mm_set_epi64x(FoldMultiplier(128 - 32), FoldMultiplier(128 + 32));

    auto lane0 =
        _mm_xor_si128(Load(inData), _mm_cvtsi32_si128(static_cast<std::int32_t>(inRegister)));
    auto lane1 = Load(inData + 16);
    auto lane2 = Load(inData + 32);
    auto lane3 = Load(inData + 48);
    for (inData += 64, inSize -= 64; inSize >= 64; inData += 64, inSize -= 64) {
        lane0 = Fold(lane0, Load(inData), overFourLanes);
        lane1 = Fold(lane1, Load(inData + 16), overFourLanes);
        lane2 = Fold(lane2, Load(inData + 32), overFourLanes);
        lane3 = Fold(lane3, Load(inData + 48), overFourLanes);
    }
    lane0 = Fold(lane0, lane1, overOneLane);
    lane0 = Fold(lane0, lane2, overOneLane);
    lane0 = Fold(lane0, lane3, overOneLane);
    for (; inSize >= 16; inData += 16, inSize -= 16) {
        lane0 = Fold(lane0, Load(inData), overOneLane);
    }

    std::uint8_t folded[16];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(folded), lane0);
    return UpdateCRC32Portable(UpdateCRC32Portable(0, folded, sizeof folded), inData, inSize);
}

bool CanFold() noexcept {
    static bool const s_can = [] {
        // A static constructor of a client may get here before the one that initialises the
        // compiler's processor data.
        __builtin_cpu_init();
        return __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
    }();
    return s_can;
}

#endif

} // namespace

std::uint32_t UpdateCRC32(std::uint32_t inRegister, std::uint8_t inByte) noexcept {
    return (inRegister >> 8) ^ kTables[0][(inRegister ^ inByte) & 0xFF];
}

std::uint32_t UpdateCRC32Portable(std::uint32_t inRegister, std::uint8_t const* inData,
                                  std::size_t inSize) noexcept {
    for (; inSize >= 8; inData += 8, inSize -= 8) {
        auto const low = inRegister ^ LoadLittleEndian(inData);
        auto const high = LoadLittleEndian(inData + 4);
        inRegister = kTables[7][low & 0xFF] ^ kTables[6][low >> 8 & 0xFF] ^
                     kTables[5][low >> 16 & 0xFF] ^ kTables[4][low >> 24] ^
                     kTables[3][high & 0xFF] ^ kTables[2][high >> 8 & 0xFF] ^
                     kTables[1][high >> 16 & 0xFF] ^ kTables[0][high >> 24];
    }
    for (; inSize != 0; ++inData, --inSize) {
        inRegister = UpdateCRC32(inRegister, *inData);
    }
    return inRegister;
}

std::uint32_t UpdateCRC32(std::uint32_t inRegister, std::uint8_t const* inData,
                          std::size_t inSize) noexcept {
#if defined(__x86_64__)
    if (inSize >= kFoldedAtOnce && CanFold()) {
        return UpdateByFolding(inRegister, inData, inSize);
    }
#endif
    return UpdateCRC32Portable(inRegister, inData, inSize);
}

} // namespace brindle::filesupport
