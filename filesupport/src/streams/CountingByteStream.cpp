#include <brindle/filesupport/CountingByteStream.h>

#include <algorithm>

namespace brindle::filesupport {

OCountingByteStream::~OCountingByteStream() = default;

void OCountingByteStream::Put(std::uint8_t) {
    mCount = std::max(mCount, ++mPosition);
}

void OCountingByteStream::WriteBlock(std::uint8_t const*, std::uint32_t inCount) {
    mPosition += inCount;
    if (inCount != 0) {
        mCount = std::max(mCount, mPosition);
    }
}

void OCountingByteStream::CurPos(std::uint64_t inPosition) {
    mPosition = inPosition;
}

std::uint64_t OCountingByteStream::CurPos() const {
    return mPosition;
}

} // namespace brindle::filesupport
