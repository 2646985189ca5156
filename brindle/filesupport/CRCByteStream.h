#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>

namespace brindle::filesupport {

/// Hands everything on to a stream that the caller keeps alive, and takes the CRC-32 of IEEE 802.3
/// of the bytes that pass, in the order in which they pass: seeking is handed on and leaves the sum
/// alone. A byte counts even if the sink then refuses it.
class BRN_API OCRCByteStream : public OByteStream {
public:
    explicit OCRCByteStream(OByteStream& outSink) noexcept : mSink(outSink) {}
    ~OCRCByteStream() override;

    void Put(std::uint8_t inValue) override;
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override;

    /// The sum of the bytes so far, 0 of none. Further bytes continue it.
    std::uint32_t Value() const noexcept { return ~mRegister; }

private:
    OByteStream& mSink;
    std::uint32_t mRegister = 0xFFFFFFFF;
};

} // namespace brindle::filesupport
