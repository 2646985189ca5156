#pragma once

#include <brindle/filesupport/ByteStream.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace brindle::filesupport {

// Reading a container of bytes from a position on. The size is looked at afresh every time, so a
// container that its owner has meanwhile shortened ends early and no worse.

template <typename Container>
std::uint8_t GetFrom(Container const& inContainer, std::size_t& ioPosition) {
    if (ioPosition >= inContainer.size()) {
        throw eof_error();
    }
    return static_cast<std::uint8_t>(inContainer[ioPosition++]);
}

template <typename Container>
void ReadBlockFrom(Container const& inContainer, std::size_t& ioPosition,
                   std::uint8_t* outDestination, std::uint32_t inCount) {
    auto const start = std::min(ioPosition, inContainer.size());
    auto const available = std::min<std::size_t>(inCount, inContainer.size() - start);
    std::copy_n(inContainer.begin() + static_cast<std::ptrdiff_t>(start), available,
                outDestination);
    ioPosition += available;
    if (available < inCount) {
        throw eof_error();
    }
}

template <typename Container>
void SeekIn(Container const& inContainer, std::size_t& outPosition, std::uint64_t inPosition) {
    if (inPosition > inContainer.size()) {
        throw eof_error();
    }
    outPosition = static_cast<std::size_t>(inPosition);
}

} // namespace brindle::filesupport
