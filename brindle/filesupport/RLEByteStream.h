#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>

namespace brindle::filesupport {

// The run-length format is PackBits: a sequence of packets without header or end mark. A packet
// begins with a control byte, a signed number c. From 0 up, c + 1 literal bytes follow; from -127
// to -1, one byte follows that stands 1 - c times; -128 means nothing, and is skipped.

/// Decodes what a stream delivers that the caller keeps alive. The data ends where the source ends:
/// there, and inside a packet that is cut short, reading throws `eof_error`. The length is not
/// known.
class BRN_API IRLEByteStream : public IByteStream {
public:
    explicit IRLEByteStream(IByteStream& inSource) noexcept : mSource(inSource) {}
    ~IRLEByteStream() override;

    std::uint8_t Get() override;

    /// As so many calls of `Get`, but takes literal bytes from the source in blocks; one that the
    /// source fails to deliver counts as read.
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;

    /// The same, but for an end between two packets, which is where whole data ends: there it
    /// returns, with how many bytes there were. Throws `eof_error` where a packet is cut short.
    std::uint32_t ReadUpTo(std::uint8_t* outDestination, std::uint32_t inCount);

    /// There are no positions in a decoded stream: both throw `byte_stream_exception`.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;

private:
    bool HasPacket();

    IByteStream& mSource;
    std::uint32_t mLiteralsLeft = 0;
    std::uint32_t mRepeatsLeft = 0;
    std::uint8_t mRepeated = 0;
};

/// Encodes into a stream that the caller keeps alive. Up to 128 bytes wait for their packet until
/// `Flush`, which must follow the last byte: the destructor does not flush.
///
/// When the sink throws, what waits keeps waiting, and the byte whose `Put` threw is not taken; of
/// a block or a packet, a part may have gone out.
class BRN_API ORLEByteStream : public OByteStream {
public:
    explicit ORLEByteStream(OByteStream& outSink) noexcept : mSink(outSink) {}
    ~ORLEByteStream() override;

    void Put(std::uint8_t inValue) override;
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;

    /// There are no positions in an encoded stream: both throw `byte_stream_exception`.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;

    /// Writes out the bytes that wait, if there are any.
    virtual void Flush();

protected:
    /// Sends the packet that waits, of at least one byte, to the sink.
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
