#pragma once

#include <array>
#include <cstdint>

/// The orders in which kernels with shuffles of 16 bytes store the parts of text.
namespace brindle::utility::impl {

/// The operand of a byte shuffle: for each byte of the result, the index of its source.
struct alignas(16) ByteShuffle {
    std::uint8_t bytes[16];
};
using ByteShuffles = std::array<ByteShuffle, 256>;

/// For each set of 16-bit lanes, given as a bit mask, the shuffle that moves these lanes to the
/// front and so drops the others.
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

inline constexpr ByteShuffles kUnitShuffles = MakeUnitShuffles();

/// For each set of 16-bit lanes that hold ASCII, given as a bit mask, the shuffle that keeps the
/// first byte of these lanes and both bytes of the others.
constexpr ByteShuffles MakeTwoByteShuffles() {
    ByteShuffles shuffles{};
    for (unsigned ascii = 0; ascii < 256; ++ascii) {
        unsigned kept = 0;
        for (unsigned lane = 0; lane < 8; ++lane) {
            shuffles[ascii].bytes[kept++] = static_cast<std::uint8_t>(2 * lane);
            if ((ascii >> lane & 1) == 0) {
                shuffles[ascii].bytes[kept++] = static_cast<std::uint8_t>(2 * lane + 1);
            }
        }
    }
    return shuffles;
}

/// For four 32-bit lanes, the shuffle that puts the bytes of their sequences in order. The index
/// has two bits for each lane: the lower is set if the sequence has at least two bytes, the upper
/// if it has three. The bytes of a lane are the second last, the last, and the third last of the
/// sequence.
constexpr ByteShuffles MakeThreeByteShuffles() {
    ByteShuffles shuffles{};
    for (unsigned sizes = 0; sizes < 256; ++sizes) {
        unsigned kept = 0;
        for (unsigned lane = 0; lane < 4; ++lane) {
            if ((sizes >> 2 * lane & 2) != 0) {
                shuffles[sizes].bytes[kept++] = static_cast<std::uint8_t>(4 * lane + 2);
            }
            if ((sizes >> 2 * lane & 1) != 0) {
                shuffles[sizes].bytes[kept++] = static_cast<std::uint8_t>(4 * lane);
            }
            shuffles[sizes].bytes[kept++] = static_cast<std::uint8_t>(4 * lane + 1);
        }
    }
    return shuffles;
}

inline constexpr ByteShuffles kTwoByteShuffles = MakeTwoByteShuffles();
inline constexpr ByteShuffles kThreeByteShuffles = MakeThreeByteShuffles();

} // namespace brindle::utility::impl
