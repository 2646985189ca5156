#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/ByteStream.h>

#include <cstdint>

namespace brindle::filesupport {

/// The next bytes of a source, as a stream of their own that ends behind them, so that a reader of
/// one part of a file cannot run into the next:
///
///     ILimitedByteStream chunk(inFile, length);
///     chunk >> table; // throws `eof_error` behind the chunk
///
/// The caller keeps the source alive and does not use it meanwhile. Positions count from where the
/// source was at construction. The source may end earlier.
class BRN_API ILimitedByteStream : public IByteStream {
public:
    /// Begins at the present position of the source, and ends `inLength` bytes behind it.
    ILimitedByteStream(IByteStream& inSource, std::uint64_t inLength);
    ~ILimitedByteStream() override;

    std::uint8_t Get() override;
    /// Throws `eof_error` before a byte is read if fewer are left.
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override;
    /// Throws `eof_error` for a position behind the end.
    void CurPos(std::uint64_t inPosition) override;
    std::uint64_t CurPos() const override { return mPosition; }
    /// Less than the length given to the constructor if the source is known to end earlier.
    std::uint64_t Length() const override;

private:
    IByteStream& mSource;
    std::uint64_t const mStart;
    std::uint64_t const mLength;
    std::uint64_t mPosition = 0;
};

} // namespace brindle::filesupport
