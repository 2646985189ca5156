#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>

namespace brindle::filesupport {

/// Forwards every call to a stream that the caller keeps alive, and computes the CRC-32 of IEEE
/// 802.3 of the written bytes, in the order in which they are written.
///
///     OCRCByteStream sum(outFile);
///     sum << inFile;
///     std::uint32_t const crc = sum.Value();
///
/// Seeking does not affect the sum. A byte is included even if the sink then throws.
class BRN_API OCRCByteStream : public OByteStream {
public:
    /// Passes the bytes on to the sink, which the caller keeps alive.
    explicit OCRCByteStream(OByteStream& outSink) noexcept : mSink(outSink) {}
    ~OCRCByteStream() override;

    void Put(std::uint8_t inValue) override;
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;

    /// The sum of the bytes written so far, 0 for none. Further bytes continue the sum.
    [[nodiscard]] std::uint32_t Value() const noexcept { return ~mRegister; }

private:
    OByteStream& mSink;
    std::uint32_t mRegister = 0xFFFFFFFF;
};

/// The same for the bytes that are read, in the order in which they are read:
///
///     ICRCByteStream sum(inFile);
///     sum >> table;
///     bool const isWhole = sum.Value() == expected;
///
/// A byte that the source failed to give is not included.
class BRN_API ICRCByteStream : public IByteStream {
public:
    /// Reads from the source, which the caller keeps alive.
    explicit ICRCByteStream(IByteStream& inSource) noexcept : mSource(inSource) {
        SetFiltered(inSource);
    }
    ~ICRCByteStream() override;

    std::uint8_t Get() override;
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;
    std::uint64_t Length() const override;

    /// The sum of the bytes read so far, 0 for none.
    [[nodiscard]] std::uint32_t Value() const noexcept { return ~mRegister; }

private:
    IByteStream& mSource;
    std::uint32_t mRegister = 0xFFFFFFFF;
};

} // namespace brindle::filesupport
