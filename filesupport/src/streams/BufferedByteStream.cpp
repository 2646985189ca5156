#include <brindle/filesupport/BufferedByteStream.h>

#include "filesupport/src/streams/StreamEnd.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace brindle::filesupport {

using config::FileOperation;
using impl::Cell;
using impl::ThrowEnd;

IBufferedByteStream::IBufferedByteStream(IByteStream& inSource, std::uint32_t inBufferSize,
                                         std::uint32_t inBlockSize)
    : mSource(inSource), mBufferSize(std::max<std::uint32_t>(inBufferSize, 2)),
      mBlockSize(std::clamp<std::uint32_t>(inBlockSize, 1, mBufferSize / 2)),
      mLength(inSource.Length()), mBuffer(new Cell[mBufferSize]), mNext(mBuffer.get()),
      mLimit(mNext) {
    SetFiltered(inSource);
}

IBufferedByteStream::~IBufferedByteStream() = default;

bool IBufferedByteStream::Holds(std::uint64_t inPosition, std::uint64_t inCount) const noexcept {
    return inPosition >= mBufferedStart && inPosition - mBufferedStart <= mBufferedLength &&
           inCount <= mBufferedLength - (inPosition - mBufferedStart);
}

void IBufferedByteStream::MoveTo(std::uint64_t inPosition) noexcept {
    mNext = mLimit = mBuffer.get();
    mLimitPosition = inPosition;
    if (Holds(inPosition, 0)) {
        mNext += inPosition - mBufferedStart;
        mLimit += mBufferedLength;
        mLimitPosition = mBufferedStart + mBufferedLength;
    }
}

void IBufferedByteStream::Refill() {
    auto const position = CurPos();
    if (position >= mLength) {
        ThrowEnd(*this, FileOperation::kRead);
    }
    FillBuffer(position, 1);
    if (!Holds(position, 1)) {
        // Possible only if a derived class overrides `FillBuffer`.
        ThrowEnd(*this, FileOperation::kRead);
    }
}

void IBufferedByteStream::ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) {
    if (inCount == 0) {
        return;
    }
    auto const position = CurPos();
    if (inCount > mBufferSize - mBlockSize) {
        mSource.CurPos(position);
        mSource.ReadBlock(outDestination, inCount);
        MoveTo(position + inCount);
        return;
    }
    auto const left = position < mLength ? mLength - position : 0;
    auto const count = static_cast<std::uint32_t>(std::min<std::uint64_t>(inCount, left));
    if (count > Unread()) {
        FillBuffer(position, count);
    }
    if (count > Unread()) {
        ThrowEnd(*this, FileOperation::kRead);
    }
    if (count != 0) {
        std::memcpy(outDestination, mNext, count);
        mNext += count;
    }
    if (count < inCount) {
        ThrowEnd(*this, FileOperation::kRead);
    }
}

void IBufferedByteStream::CurPos(std::uint64_t inPosition) {
    if (inPosition > mLength) {
        ThrowEnd(*this, FileOperation::kSeek);
    }
    MoveTo(inPosition);
}

std::uint64_t IBufferedByteStream::Length() const {
    return mSource.Length();
}

void IBufferedByteStream::FillBuffer(std::uint64_t inPosition, std::uint32_t inCount) {
    if (Holds(inPosition, inCount)) {
        return;
    }
    if (inPosition > mLength || inCount > mLength - inPosition) {
        ThrowEnd(*this, FileOperation::kRead);
    }
    auto const position = CurPos();
    auto start = inPosition - inPosition % mBlockSize;
    // Start one block earlier if the requested bytes still fit, for readers that step back a
    // little.
    if (start > mBlockSize && start - mBlockSize + mBufferSize - inPosition > inCount) {
        start -= mBlockSize;
    }
    auto const fill = std::min<std::uint64_t>(mLength - start, mBufferSize);

    // The buffer counts as empty until the source has delivered, because bytes are moved in it.
    auto const oldStart = mBufferedStart;
    auto const oldEnd = mBufferedStart + mBufferedLength;
    mBufferedLength = 0;
    MoveTo(position);

    // The old range fills the buffer or ends at the end of the data. So a new range that starts in
    // the old one does not end before the old one does, and a new range that starts before the old
    // one and reaches it lacks only the bytes in front of it.
    if (start >= oldStart && start < oldEnd) {
        auto const keep = oldEnd - start;
        std::memmove(mBuffer.get(), mBuffer.get() + (start - oldStart), keep);
        ReadSource(start + keep, keep, fill - keep);
    } else if (start < oldStart && start + fill >= oldStart && oldStart < oldEnd) {
        auto const missing = oldStart - start;
        auto const keep = std::min(fill - missing, oldEnd - oldStart);
        std::memmove(mBuffer.get() + missing, mBuffer.get(), keep);
        ReadSource(start, 0, missing);
    } else {
        ReadSource(start, 0, fill);
    }
    mBufferedStart = start;
    mBufferedLength = fill;
    MoveTo(position);
}

void IBufferedByteStream::ReadSource(std::uint64_t inPosition, std::uint64_t inOffset,
                                     std::uint64_t inCount) {
    mSource.CurPos(inPosition);
    mSource.ReadBlock(reinterpret_cast<std::uint8_t*>(mBuffer.get()) + inOffset,
                      static_cast<std::uint32_t>(inCount));
}

OBufferedByteStream::OBufferedByteStream(OByteStream& outSink, std::uint32_t inBufferSize,
                                         std::uint32_t)
    : mSink(outSink), mBufferSize(std::max<std::uint32_t>(inBufferSize, 1)),
      mBuffer(new Cell[mBufferSize]), mNext(mBuffer.get()), mLimit(mNext + mBufferSize) {}

OBufferedByteStream::~OBufferedByteStream() {
    try {
        OBufferedByteStream::Flush();
    } catch (...) {
        // A destructor must not throw. The caller could have flushed before.
    }
}

std::uint64_t OBufferedByteStream::BufferedLength() const noexcept {
    return std::max(mFurthest, Offset());
}

/// Empties the buffer and makes it start at `inPosition`.
void OBufferedByteStream::StartAt(std::uint64_t inPosition) noexcept {
    mBufferedStart = inPosition;
    mNext = mBuffer.get();
    mFurthest = 0;
}

void OBufferedByteStream::Flush() {
    if (auto const length = BufferedLength(); length != 0) {
        mSink.CurPos(mBufferedStart);
        mSink.WriteBlock(reinterpret_cast<std::uint8_t const*>(mBuffer.get()),
                         static_cast<std::uint32_t>(length));
        StartAt(CurPos());
    }
}

/// Calls the virtual `Flush`, and checks that an override has emptied the buffer.
void OBufferedByteStream::FlushWhole() {
    Flush();
    if (BufferedLength() != 0) {
        throw byte_stream_exception();
    }
}

void OBufferedByteStream::WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) {
    if (inCount == 0) {
        return;
    }
    if (BufferedLength() != 0 && inCount > mBufferSize - Offset()) {
        FlushWhole();
    }
    if (inCount <= mBufferSize) {
        std::memcpy(mNext, inSource, inCount);
        mNext += inCount;
        return;
    }
    auto const position = CurPos();
    mSink.CurPos(position);
    mSink.WriteBlock(inSource, inCount);
    StartAt(position + inCount);
}

void OBufferedByteStream::CurPos(std::uint64_t inPosition) {
    auto const length = BufferedLength();
    if (length == 0) {
        StartAt(inPosition);
    } else if (inPosition - mBufferedStart <= length) {
        mFurthest = length;
        mNext = mBuffer.get() + (inPosition - mBufferedStart);
    } else {
        FlushWhole();
        StartAt(inPosition);
    }
}

} // namespace brindle::filesupport
