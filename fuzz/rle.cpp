// Run-length coding: decoding reverses encoding for any block sizes, and decoding any bytes either
// succeeds or ends in `eof_error`.

#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/RLEByteStream.h>
#include <brindle/filesupport/StringByteStream.h>

#include <algorithm>
#include <cstdlib>
#include <string>

using namespace brindle::filesupport;

namespace {

std::string Decoded(IByteStream& inSource) {
    std::string data;
    OStringByteStream sink(data);
    IRLEByteStream stream(inSource);
    sink << stream;
    return data;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    IBufferByteStream source(inData, inSize);
    auto const decoded = Decoded(source);
    source.CurPos(0);
    IBufferedByteStream buffered(source, 16, 4);
    IRLEByteStream stream(buffered);
    std::string blocks(decoded.size(), 0);
    stream.ReadBlock(reinterpret_cast<std::uint8_t*>(&blocks[0]),
                     static_cast<std::uint32_t>(blocks.size()));
    if (blocks != decoded) {
        std::abort();
    }

    // The first byte is the block size.
    std::size_t const block = inSize == 0 ? 1 : inData[0] + std::size_t{1};
    std::string byBytes;
    std::string byBlocks;
    OStringByteStream byteSink(byBytes);
    OStringByteStream blockSink(byBlocks);
    ORLEByteStream byteEncoder(byteSink);
    ORLEByteStream blockEncoder(blockSink);
    for (std::size_t i = 0; i < inSize; i += block) {
        auto const count = static_cast<std::uint32_t>(std::min(block, inSize - i));
        blockEncoder.WriteBlock(inData + i, count);
    }
    std::for_each(inData, inData + inSize, [&](std::uint8_t inByte) { byteEncoder.Put(inByte); });
    byteEncoder.Flush();
    blockEncoder.Flush();
    IStringByteStream packed(byBytes);
    if (byBytes != byBlocks || Decoded(packed) != std::string(inData, inData + inSize)) {
        std::abort();
    }
    return 0;
}
