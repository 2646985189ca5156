#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>
#include <istream>
#include <ostream>

namespace brindle::filesupport {

/// Reads a standard stream that the caller keeps alive. Open it in binary mode if line ends must
/// not be converted.
///
/// A failure shows in the standard stream's state, by its own exception mask. After a failure the
/// caller has to clear that state before the stream can be used again.
class BRN_API IStdByteStream : public IByteStream {
public:
    /// Reads at the present position of the stream.
    explicit IStdByteStream(std::istream& inStream) noexcept : mStream(inStream) {}
    ~IStdByteStream() override;

    /// Throws `eof_error` when the standard stream delivers no byte.
    std::uint8_t Get() override;
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;

    /// 2^64 - 1 if the standard stream has failed or cannot seek.
    std::uint64_t CurPos() const override;

    /// Seeks to the end and back. 0 if the standard stream has failed or cannot seek.
    std::uint64_t Length() const override;

private:
    std::istream& mStream;
};

/// Writes to a standard stream that the caller keeps alive, under the same rules as
/// `IStdByteStream`.
class BRN_API OStdByteStream : public OByteStream {
public:
    /// Writes at the present position of the stream.
    explicit OStdByteStream(std::ostream& outStream) noexcept : mStream(outStream) {}
    ~OStdByteStream() override;

    void Put(std::uint8_t inValue) override;
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;

    /// 2^64 - 1 if the standard stream has failed or cannot seek.
    std::uint64_t CurPos() const override;

private:
    std::ostream& mStream;
};

} // namespace brindle::filesupport
