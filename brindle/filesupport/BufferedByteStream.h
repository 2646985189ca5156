#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>
#include <memory>

namespace brindle::filesupport {

namespace impl {

/// A byte of a buffer. Unlike `std::uint8_t *`, a pointer to it cannot alias objects of other
/// types, so a loop over `Get` or `Put` need not reload the stream's members after each stored
/// byte.
enum class Cell : std::uint8_t {};

} // namespace impl

/// Buffers reads from a stream whose single reads are expensive.
///
///     IPlatformByteStream file(inFile);
///     IBufferedByteStream in(file, 65536, 4096);
///
/// The caller owns the source and keeps it alive. Its length is read once, by the constructor.
/// Refills are aligned to blocks and reuse bytes that the buffer already has. Reads of more than
/// the buffer less one block bypass the buffer.
///
/// Beside the standard library: the buffer that a `std::filebuf` has inside, for any stream.
class BRN_API IBufferedByteStream : public IByteStream {
public:
    /// The sizes are in bytes; `inBlockSize` is at least 1 and at most half of `inBufferSize`.
    /// Other sizes are adjusted: the buffer to at least 2 bytes, then the block to the nearest
    /// limit.
    IBufferedByteStream(IByteStream& inSource, std::uint32_t inBufferSize,
                        std::uint32_t inBlockSize);
    /// With the sizes that suit a file.
    explicit IBufferedByteStream(IByteStream& inSource)
        : IBufferedByteStream(inSource, 65536, 4096) {}
    ~IBufferedByteStream() override;

    std::uint8_t Get() override {
        if (mNext == mLimit) {
            Refill();
        }
        return static_cast<std::uint8_t>(*mNext++);
    }

    /// Like `inCount` calls of `Get`, except that a read which bypasses the buffer fails as the
    /// source fails, and leaves the position as it was.
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;

    /// Sets the position; the source is not used before the next read. Throws `eof_error` for a
    /// position past the length that the source had at construction.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override { return mLimitPosition - Unread(); }

    /// The present length of the source.
    std::uint64_t Length() const override;

    /// Fills the buffer with `inCount` bytes from `inPosition` on, or with as many as fit. Reads
    /// call it for bytes that are not in the buffer. Throws `eof_error` and changes nothing if some
    /// of the bytes lie past the length. If the source throws, the buffer is empty afterwards.
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
    // The buffered bytes from the position on; an empty range if the position is outside the
    // buffer. `mLimitPosition` is the stream position of `mLimit`, so the position of `mNext`
    // follows.
    impl::Cell const* mNext;
    impl::Cell const* mLimit;
    std::uint64_t mLimitPosition = 0;
};

/// Buffers writes to a stream whose single writes are expensive. The caller owns the sink and keeps
/// it alive. The buffer holds one contiguous range of bytes, in which seeking and rewriting do not
/// use the sink. The range is written as one block when a byte arrives that does not fit.
///
/// Beside the standard library: the buffer that a `std::filebuf` has inside, for any stream.
class BRN_API OBufferedByteStream : public OByteStream {
public:
    /// `inBufferSize` is in bytes; 0 counts as 1. The block size is not used for writing.
    OBufferedByteStream(OByteStream& outSink, std::uint32_t inBufferSize,
                        std::uint32_t inBlockSize);

    /// Flushes. An exception of the sink is dropped; call `Flush` before to receive it.
    /// With the sizes that suit a file.
    explicit OBufferedByteStream(OByteStream& outSink)
        : OBufferedByteStream(outSink, 65536, 4096) {}
    ~OBufferedByteStream() override;

    void Put(std::uint8_t inValue) override {
        if (mNext == mLimit) {
            FlushWhole();
        }
        // Storing the byte before the pointer takes half the time of the reverse order.
        auto const next = mNext;
        *next = static_cast<impl::Cell>(inValue);
        mNext = next + 1;
    }

    /// A block that is longer than the buffer is written directly, after the buffered bytes.
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;

    /// Sets the position. Flushes if it is neither in the buffered range nor directly behind it.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override { return mBufferedStart + Offset(); }

    /// Writes the buffered bytes to the sink. If the sink throws, they stay in the buffer.
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
    // `mNext` is where the next byte is stored. `mFurthest` is the length of the buffered range if
    // the position was moved back from its end.
    impl::Cell* mNext;
    impl::Cell* mLimit;
    std::uint64_t mFurthest = 0;
};

} // namespace brindle::filesupport
