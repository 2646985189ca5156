#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>
#include <istream>
#include <ostream>

namespace brindle::filesupport {

// A byte stream over a standard stream, which the caller keeps alive. Its state and exception mask
// stay its own business: a failure shows in them, and a stream that has failed goes on working only
// after the caller has cleared it.

/// Reads a standard stream: one in binary mode, if line ends are to stay as they are.
class BRN_API IStdByteStream : public IByteStream {
public:
    explicit IStdByteStream(std::istream& inStream) noexcept : mStream(inStream) {}
    ~IStdByteStream() override;

    /// Throws `eof_error` when the standard stream delivers no byte.
    std::uint8_t Get() override;
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;

    /// -1, as an unsigned number, from a stream that has failed or cannot seek.
    std::uint64_t CurPos() const override;

    /// Seeks to the end and back. 0 from a stream that has failed or cannot seek.
    std::uint64_t Length() const override;

private:
    std::istream& mStream;
};

/// Writes a standard stream: one in binary mode, if line ends are to stay as they are.
class BRN_API OStdByteStream : public OByteStream {
public:
    explicit OStdByteStream(std::ostream& outStream) noexcept : mStream(outStream) {}
    ~OStdByteStream() override;

    void Put(std::uint8_t inValue) override;
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override;
    void CurPos(std::uint64_t inPosition) override;

    /// -1, as an unsigned number, from a stream that has failed or cannot seek.
    std::uint64_t CurPos() const override;

private:
    std::ostream& mStream;
};

} // namespace brindle::filesupport
