#include "host/verbs/Verbs.h"

#include "host/files/FileCoding.h"

#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/RLEByteStream.h>

namespace brindle::host {

using namespace filesupport;

namespace {

/// Reads a block, or as much as there is before the end, and returns how many bytes that was.
std::uint32_t ReadUpTo(IByteStream& inSource, std::vector<std::uint8_t>& outBlock) {
    std::uint64_t const start = inSource.CurPos();
    try {
        inSource.ReadBlock(outBlock.data(), static_cast<std::uint32_t>(outBlock.size()));
    } catch (eof_error const&) {
        // The block then begins with what there was, and the position has moved by as much.
    }
    return static_cast<std::uint32_t>(inSource.CurPos() - start);
}

void Pack(IByteStream& inSource, OByteStream& outSink) {
    std::vector<std::uint8_t> block(kCodingBlockSize);
    OBufferedByteStream buffer(outSink, kCodingBlockSize, kCodingBlockSize);
    ORLEByteStream encoder(buffer);
    for (std::uint32_t count = kCodingBlockSize; count == kCodingBlockSize;) {
        count = ReadUpTo(inSource, block);
        encoder.WriteBlock(block.data(), count);
    }
    encoder.Flush();
    buffer.Flush();
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    CodeFile("pack", inArguments, ioDiagnostics, Pack);
}

} // namespace

Verb const kPackVerb = {
    "pack",
    "IN OUT",
    "a file in run-length coding",
    "Writes the bytes of the file IN to the file OUT in run-length coding (PackBits), which\n"
    "makes runs of equal bytes short, and other data longer by a 128th at most. OUT is\n"
    "replaced when all is written, and stays what it was if anything fails; it may be IN.\n"
    "'unpack' gives the bytes back.\n",
    {"help"},
    Run,
};

} // namespace brindle::host
