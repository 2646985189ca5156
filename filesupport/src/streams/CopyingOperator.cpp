#include <brindle/filesupport/ByteStreamOperators.h>

#include "filesupport/src/streams/BlockStream.h"

#include <algorithm>
#include <array>
#include <limits>

namespace brindle::filesupport {

namespace {

using impl::BlockStream;

constexpr auto kToTheEnd = std::numeric_limits<std::uint64_t>::max();

/// True if nobody can tell blocks from bytes: both streams allow it, at least one of them works on
/// a file, and they do not work on the same data. Within memory, and within one file, bytes that
/// were just written may be read again.
bool CanCopyBlocks(OByteStream const& outStream, IByteStream const& inStream) {
    auto const* const source = BlockStream::Of(inStream);
    auto const* const sink = BlockStream::Of(outStream);
    if (source == nullptr || sink == nullptr || !(source->isFile || sink->isFile)) {
        return false;
    }
    if (source->identity == nullptr || sink->identity == nullptr) {
        return true;
    }
    auto const from = source->identity(inStream);
    auto const to = sink->identity(outStream);
    return from && to && !(from.value == to.value);
}

/// Writes the bytes that were read from the position `inStart` on. If that fails, the input stands
/// where a copy byte by byte would have left it: behind the byte that could not be written.
void Write(OByteStream& outStream, IByteStream& ioSource, std::uint64_t inStart,
           std::uint8_t const* inBytes, std::uint32_t inCount) {
    auto const outStart = outStream.CurPos();
    try {
        outStream.WriteBlock(inBytes, inCount);
    } catch (...) {
        ioSource.CurPos(inStart + (outStream.CurPos() - outStart) + 1);
        throw;
    }
}

/// Copies up to `inCount` bytes; throws `eof_error` if the input ends first, unless that is wanted.
void CopyBlocks(OByteStream& outStream, IByteStream& ioSource, std::uint64_t inCount) {
    // On the stack, so that a lack of memory cannot make the copy fail.
    std::array<std::uint8_t, 32 * 1024> block; // every byte that is written was read before
    for (auto rest = inCount; rest != 0;) {
        auto const count = static_cast<std::uint32_t>(std::min<std::uint64_t>(rest, block.size()));
        auto const start = ioSource.CurPos();
        try {
            ioSource.ReadBlock(block.data(), count);
        } catch (byte_stream_exception const& failure) {
            auto const read = static_cast<std::uint32_t>(ioSource.CurPos() - start);
            Write(outStream, ioSource, start, block.data(), read);
            bool const isEnd = dynamic_cast<eof_error const*>(&failure) != nullptr;
            if (isEnd && inCount == kToTheEnd) {
                return;
            }
            throw;
        }
        Write(outStream, ioSource, start, block.data(), count);
        rest -= count;
    }
}

/// The same byte by byte.
void CopyEachByte(OByteStream& outStream, IByteStream& ioSource, std::uint64_t inCount) {
    for (std::uint64_t i = 0; i < inCount; ++i) {
        std::uint8_t value = 0;
        try {
            value = ioSource.Get();
        } catch (eof_error const&) {
            if (inCount == kToTheEnd) {
                return;
            }
            throw;
        }
        outStream.Put(value);
    }
}

} // namespace

OByteStream& operator<<(OByteStream& outStream, IByteStream& inStream) {
    auto const length = inStream.Length();
    auto const count = length != 0 ? length : kToTheEnd;
    if (CanCopyBlocks(outStream, inStream)) {
        CopyBlocks(outStream, inStream, count);
    } else {
        CopyEachByte(outStream, inStream, count);
    }
    return outStream;
}

} // namespace brindle::filesupport
