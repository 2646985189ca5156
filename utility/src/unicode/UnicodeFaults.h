#pragma once

#include "utility/src/unicode/UnicodeShuffles.h"

#include <cstdint>

/// What can be wrong with two adjacent bytes of UTF-8, for kernels that look up 16 bytes at a time.
namespace brindle::utility::impl::faults {

// The faults that two adjacent bytes can have, one bit each. Three tables give, for the upper and
// the lower half of the first byte and for the upper half of the second byte, the faults that this
// half allows. A fault that all three allow is present.
inline constexpr std::uint8_t kTooShort = 0x01;  // a lead that is not followed by a trailing byte
inline constexpr std::uint8_t kTooLong = 0x02;   // ASCII that is followed by a trailing byte
inline constexpr std::uint8_t kOverlong3 = 0x04; // E0 80..9F
inline constexpr std::uint8_t kTooLarge = 0x08;  // F4..FF 90..BF
inline constexpr std::uint8_t kOverlong2 = 0x20; // C0..C1 80..BF
inline constexpr std::uint8_t kNotFour = 0x40;   // F0 and F5..FF 80..8F
inline constexpr std::uint8_t kTwoTrailing =
    0x80; // a fault unless a lead of three or four is before them
inline constexpr std::uint8_t kLow = kTooShort | kTooLong | kTwoTrailing;
inline constexpr std::uint8_t kLowLarge = kLow | kTooLarge | kNotFour;
inline constexpr std::uint8_t kTrailing = kTooLong | kOverlong2 | kTwoTrailing;

inline constexpr ByteShuffle kFirstUpperHalf = {
    {kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTooLong, kTwoTrailing,
     kTwoTrailing, kTwoTrailing, kTwoTrailing, kTooShort | kOverlong2, kTooShort,
     kTooShort | kOverlong3, kTooShort | kTooLarge | kNotFour}};
inline constexpr ByteShuffle kFirstLowerHalf = {
    {kLow | kOverlong2 | kOverlong3 | kNotFour, kLow | kOverlong2, kLow, kLow, kLow | kTooLarge,
     kLowLarge, kLowLarge, kLowLarge, kLowLarge, kLowLarge, kLowLarge, kLowLarge, kLowLarge,
     kLowLarge, kLowLarge, kLowLarge}};
inline constexpr ByteShuffle kSecondUpperHalf = {
    {kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort, kTooShort,
     kTrailing | kOverlong3 | kNotFour, kTrailing | kOverlong3 | kTooLarge, kTrailing | kTooLarge,
     kTrailing | kTooLarge, kTooShort, kTooShort, kTooShort, kTooShort}};

} // namespace brindle::utility::impl::faults
