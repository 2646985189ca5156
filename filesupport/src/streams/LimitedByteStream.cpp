#include <brindle/filesupport/LimitedByteStream.h>

#include "filesupport/src/streams/StreamEnd.h"

#include <algorithm>

namespace brindle::filesupport {

ILimitedByteStream::ILimitedByteStream(IByteStream& inSource, std::uint64_t inLength)
    : mSource(inSource), mStart(inSource.CurPos()), mLength(inLength) {
    SetFiltered(inSource);
}

ILimitedByteStream::~ILimitedByteStream() = default;

std::uint8_t ILimitedByteStream::Get() {
    if (mPosition == mLength) {
        impl::ThrowEnd(*this, config::FileOperation::kRead);
    }
    auto const value = mSource.Get();
    ++mPosition;
    return value;
}

void ILimitedByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    if (inCount > mLength - mPosition) {
        impl::ThrowEnd(*this, config::FileOperation::kRead);
    }
    mSource.ReadBlock(outDestination, inCount);
    mPosition += inCount;
}

void ILimitedByteStream::CurPos(std::uint64_t inPosition) {
    if (inPosition > mLength) {
        impl::ThrowEnd(*this, config::FileOperation::kSeek);
    }
    mSource.CurPos(mStart + inPosition);
    mPosition = inPosition;
}

std::uint64_t ILimitedByteStream::Length() const {
    auto const length = mSource.Length();
    return length == 0 ? mLength : std::min(mLength, length - std::min(mStart, length));
}

} // namespace brindle::filesupport
