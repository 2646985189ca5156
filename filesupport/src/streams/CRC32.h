#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle::filesupport {

/// Advances the bit-reflected CRC-32 register of IEEE 802.3 by one byte, or by `inSize` bytes. The
/// register starts with all bits set, and the sum is its complement.
std::uint32_t UpdateCRC32(std::uint32_t inRegister, std::uint8_t inByte) noexcept;
std::uint32_t UpdateCRC32(std::uint32_t inRegister, std::uint8_t const* inData,
                          std::size_t inSize) noexcept;

/// The same by tables alone, for processors without carry-less multiplication.
std::uint32_t UpdateCRC32Portable(std::uint32_t inRegister, std::uint8_t const* inData,
                                  std::size_t inSize) noexcept;

} // namespace brindle::filesupport
