#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>

namespace brindle::filesupport {

/// Reads a buffer that the caller keeps alive. Any position may be set, but reading at a position
/// past the last byte throws `eof_error`.
class BRN_API IBufferByteStream : public IByteStream {
public:
    /// `inBuffer` may be null if `inLength`, in bytes, is 0.
    IBufferByteStream(std::uint8_t const* inBuffer, std::uint64_t inLength) noexcept
        : mBuffer(inBuffer), mLength(inLength) {}
    ~IBufferByteStream() override;

    std::uint8_t Get() override {
        if (mPosition >= mLength) {
            throw eof_error();
        }
        return mBuffer[mPosition++];
    }
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override { mPosition = inPosition; }
    std::uint64_t CurPos() const override { return mPosition; }
    std::uint64_t Length() const override { return mLength; }

private:
    std::uint8_t const* mBuffer;
    std::uint64_t mLength;
    std::uint64_t mPosition = 0;
};

/// Writes into a buffer of fixed length that the caller keeps alive. Any position may be set, but
/// writing at a position past the last byte throws `eof_error`.
class BRN_API OBufferByteStream : public OByteStream {
public:
    /// `outBuffer` may be null if `inLength`, in bytes, is 0.
    OBufferByteStream(std::uint8_t* outBuffer, std::uint64_t inLength) noexcept
        : mBuffer(outBuffer), mLength(inLength) {}
    ~OBufferByteStream() override;

    void Put(std::uint8_t inValue) override {
        if (mPosition >= mLength) {
            throw eof_error();
        }
        mBuffer[mPosition] = inValue;
        OBufferByteStream::CurPos(mPosition + 1);
    }
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override {
        mPosition = inPosition;
        mCount = inPosition > mCount ? inPosition : mCount;
    }
    std::uint64_t CurPos() const override { return mPosition; }

    /// The length of the buffer.
    [[nodiscard]] virtual std::uint64_t Length() const;

    /// The highest position so far, which tells how much of the buffer is used. Moving the position
    /// forward counts as use.
    [[nodiscard]] std::uint64_t Count() const noexcept { return mCount; }

private:
    std::uint8_t* mBuffer;
    std::uint64_t mLength;
    std::uint64_t mPosition = 0;
    std::uint64_t mCount = 0;
};

} // namespace brindle::filesupport
