#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>
#include <memory>

namespace brindle::filesupport {

namespace impl {

/// A byte of a buffer. Unlike `std::uint8_t`, its type aliases no other, so that a loop over `Get`
/// or `Put` need not load the stream's members again behind every byte that it stores.
enum class Cell : std::uint8_t {};

} // namespace impl

/// Puts a buffer in front of a stream whose single reads are dear. The source stays the caller's,
/// and outlives this stream; its length is taken once, at the beginning. Refills are aligned on
/// blocks, and keep what the buffer holds already; large blocks bypass the buffer.
class BRN_API IBufferedByteStream : public IByteStream {
public:
    /// Sizes are in bytes, `inBlockSize` above 0 and at most half of `inBufferSize`. Other sizes
    /// are brought there: a buffer of less than 2 bytes becomes one of 2, then the block gives way.
    IBufferedByteStream(IByteStream& inSource, std::uint32_t inBufferSize,
                        std::uint32_t inBlockSize);
    ~IBufferedByteStream() override;

    std::uint8_t Get() override {
        if (mNext == mLimit) {
            Refill();
        }
        return static_cast<std::uint8_t>(*mNext++);
    }

    /// As so many calls of `Get`; but a block longer than the buffer less a block is the source's
    /// to read, or to refuse, and if that throws the position stays.
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;

    /// Touches the source no sooner than the next read. Throws `eof_error` for a position past the
    /// length that the source had at the beginning.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override { return mLimitPosition - Unread(); }

    /// The present length of the source.
    std::uint64_t Length() const override;

    /// Has the buffer hold `inCount` bytes from `inPosition` on, or as many as fit; reading calls
    /// it for what the buffer lacks. Throws `eof_error`, before anything is touched, if not all of
    /// them lie within the length; what the source throws leaves the buffer empty.
    virtual void FillBuffer(std::uint64_t inPosition, std::uint32_t inCount);

private:
    std::uint64_t Unread() const noexcept { return static_cast<std::uint64_t>(mLimit - mNext); }
    bool Holds(std::uint64_t inPosition, std::uint64_t inCount) const noexcept;
    void MoveTo(std::uint64_t inPosition) noexcept;
    void Refill();
    void ReadSource(std::uint64_t inPosition, std::uint64_t inOffset, std::uint64_t inCount);

    IByteStream& mSource;
    std::uint32_t mBufferSize;
    std::uint32_t mBlockSize;
    std::uint64_t mLength;
    std::unique_ptr<impl::Cell[]> mBuffer;
    std::uint64_t mBufferedStart = 0;
    std::uint64_t mBufferedLength = 0;
    // The reading window: the buffered bytes from the position on, or nothing if the position lies
    // outside the buffer. The stream's position at its end tells the position everywhere in it.
    impl::Cell const* mNext;
    impl::Cell const* mLimit;
    std::uint64_t mLimitPosition = 0;
};

/// Puts a buffer in front of a stream whose single writes are dear. The sink stays the caller's,
/// and outlives this stream. The buffer holds one range of bytes, in which seeking and rewriting
/// cost nothing; it goes out as one block, to its position, when a byte comes that it cannot take.
class BRN_API OBufferedByteStream : public OByteStream {
public:
    /// `inBufferSize` is in bytes; 0 counts as 1. The block size plays no part in writing.
    OBufferedByteStream(OByteStream& outSink, std::uint32_t inBufferSize,
                        std::uint32_t inBlockSize);

    /// Flushes. A failure of the sink is dropped: who wants to hear of it calls `Flush` before.
    ~OBufferedByteStream() override;

    void Put(std::uint8_t inValue) override {
        if (mNext == mLimit) {
            FlushWhole();
        }
        // Storing the byte before the pointer takes half the time of the other order.
        auto const next = mNext;
        *next = static_cast<impl::Cell>(inValue);
        mNext = next + 1;
    }

    /// A block longer than the buffer goes past it to the sink, after what is buffered.
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;

    /// Flushes if the position lies neither in the buffered range nor right behind it.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override { return mBufferedStart + Offset(); }

    /// Sends what is buffered to the sink. If the sink throws, everything stays buffered.
    virtual void Flush();

private:
    std::uint64_t Offset() const noexcept {
        return static_cast<std::uint64_t>(mNext - mBuffer.get());
    }
    std::uint64_t BufferedLength() const noexcept;
    void StartAt(std::uint64_t inPosition) noexcept;
    void FlushWhole();

    OByteStream& mSink;
    std::uint32_t mBufferSize;
    std::unique_ptr<impl::Cell[]> mBuffer;
    std::uint64_t mBufferedStart = 0;
    // The position lies at `mNext`. It may have been moved back from the end of what is buffered,
    // which `mFurthest` keeps from then on.
    impl::Cell* mNext;
    impl::Cell* mLimit;
    std::uint64_t mFurthest = 0;
};

} // namespace brindle::filesupport
