#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>

namespace brindle::filesupport {

/// @file
/// The run-length format is PackBits: a sequence of packets without a header or an end mark. A
/// packet begins with a control byte, a signed number c. If c is 0 or more, c + 1 literal bytes
/// follow. From -127 to -1, one byte follows that is repeated 1 - c times. -128 is skipped.

/// Decodes the data of a stream that the caller keeps alive. The data ends where the source ends;
/// there, and in a truncated packet, reading throws `eof_error`. The length is unknown, so `Length`
/// returns 0.
class BRN_API IRLEByteStream : public IByteStream {
public:
    /// Reads packets from the source, beginning at its present position.
    explicit IRLEByteStream(IByteStream& inSource) noexcept : mSource(inSource) {
        SetFiltered(inSource);
    }
    ~IRLEByteStream() override;

    std::uint8_t Get() override;

    /// Like `inCount` calls of `Get`, but reads literal bytes from the source in blocks. Bytes of a
    /// block that the source fails to deliver count as read.
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;

    /// Like `ReadBlock`, but if the data ends between two packets, where complete data does, it
    /// returns the number of bytes read instead of throwing. A truncated packet throws `eof_error`.
    [[nodiscard]] std::uint32_t ReadUpTo(std::uint8_t* outDestination, std::uint32_t inCount);

    /// A decoded stream has no positions: both throw `byte_stream_exception`.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;

private:
    bool HasPacket();

    IByteStream& mSource;
    std::uint32_t mLiteralsLeft = 0;
    std::uint32_t mRepeatsLeft = 0;
    std::uint8_t mRepeated = 0;
};

/// Encodes into a stream that the caller keeps alive.
///
///     ORLEByteStream packed(outFile);
///     packed << inFile;
///     packed.Flush();
///
/// Up to 128 bytes are pending until their packet is complete. Call `Flush` after the last byte;
/// the destructor does not flush.
///
/// If the sink throws, the pending bytes stay pending and the byte whose `Put` threw is not taken.
/// Part of a block or packet may have been written by then.
class BRN_API ORLEByteStream : public OByteStream {
public:
    /// Writes packets to the sink, which the caller keeps alive.
    explicit ORLEByteStream(OByteStream& outSink) noexcept : mSink(outSink) {}
    ~ORLEByteStream() override;

    void Put(std::uint8_t inValue) override;
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;

    /// An encoded stream has no positions: both throw `byte_stream_exception`.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;

    /// Writes the pending bytes, if there are any.
    virtual void Flush();

protected:
    /// Writes the pending packet, which has at least one byte, to the sink.
    virtual void WritePacket();

private:
    static constexpr std::uint32_t kPacketSize = 128;

    void SendPacket(std::uint32_t inCount);
    void Take(std::uint32_t inCount);

    OByteStream& mSink;
    bool mIsRun = true;
    std::uint32_t mCount = 0;
    std::uint8_t mPacket[kPacketSize] = {};
};

} // namespace brindle::filesupport
