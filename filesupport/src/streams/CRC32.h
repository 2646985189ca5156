#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle::filesupport {

/// The CRC-32 register of IEEE 802.3, bit-reflected, after one more byte, or after `inSize` more.
/// The sum of a message is the complement of the register that began as all ones.
std::uint32_t UpdateCRC32(std::uint32_t inRegister, std::uint8_t inByte) noexcept;
std::uint32_t UpdateCRC32(std::uint32_t inRegister, std::uint8_t const* inData,
                          std::size_t inSize) noexcept;

/// The same by tables alone, as it is done where the processor has no carry-less multiplication.
std::uint32_t UpdateCRC32Portable(std::uint32_t inRegister, std::uint8_t const* inData,
                                  std::size_t inSize) noexcept;

} // namespace brindle::filesupport
