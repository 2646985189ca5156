#include <brindle/filesupport/CountingByteStream.h>

#include <algorithm>
#include <limits>

namespace brindle::filesupport {

OCountingByteStream::~OCountingByteStream() = default;

void OCountingByteStream::Put(std::uint8_t) {
    mCount = std::max(mCount, ++mPosition);
}

void OCountingByteStream::WriteBlock(std::uint8_t const*, std::uint32_t inCount) {
    constexpr auto kLast = std::numeric_limits<std::uint64_t>::max();
    // Positions wrap behind the last one, which then is the furthest that was reached.
    bool const wraps = mPosition != kLast && inCount > kLast - mPosition;
    mPosition += inCount;
    if (inCount != 0) {
        mCount = std::max(mCount, wraps ? kLast : mPosition);
    }
}

void OCountingByteStream::CurPos(std::uint64_t inPosition) {
    mPosition = inPosition;
}

std::uint64_t OCountingByteStream::CurPos() const {
    return mPosition;
}

} // namespace brindle::filesupport
