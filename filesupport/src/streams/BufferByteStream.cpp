#include <brindle/filesupport/BufferByteStream.h>

#include <algorithm>
#include <cstddef>

namespace brindle::filesupport {

namespace {

/// The number of bytes, at most `inCount`, between the position and the end.
std::size_t Available(std::uint64_t inPosition, std::uint64_t inLength, std::uint32_t inCount) {
    auto const left = inPosition < inLength ? inLength - inPosition : 0;
    return static_cast<std::size_t>(std::min<std::uint64_t>(left, inCount));
}

} // namespace

IBufferByteStream::~IBufferByteStream() = default;

void IBufferByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    auto const available = Available(mPosition, mLength, inCount);
    if (available != 0) {
        std::copy_n(mBuffer + mPosition, available, outDestination);
        mPosition += available;
    }
    if (available < inCount) {
        throw eof_error();
    }
}

OBufferByteStream::~OBufferByteStream() = default;

void OBufferByteStream::WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) {
    auto const available = Available(mPosition, mLength, inCount);
    if (available != 0) {
        std::copy_n(inSource, available, mBuffer + mPosition);
        OBufferByteStream::CurPos(mPosition + available);
    }
    if (available < inCount) {
        throw eof_error();
    }
}

std::uint64_t OBufferByteStream::Length() const {
    return mLength;
}

} // namespace brindle::filesupport
