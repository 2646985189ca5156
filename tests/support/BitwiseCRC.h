#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle::tests {

/// The CRC-32 of IEEE 802.3 by its definition, a bit at a time.
inline std::uint32_t BitwiseCRC(std::uint8_t const* inData, std::size_t inSize) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < inSize; ++i) {
        crc ^= inData[i];
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1) != 0 ? (crc >> 1) ^ 0xEDB88320 : crc >> 1;
        }
    }
    return ~crc;
}

} // namespace brindle::tests
