#include "host/verbs/Verbs.h"

#include "host/files/FileCoding.h"
#include "host/files/FileErrors.h"

#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/RLEByteStream.h>

namespace brindle::host {

using namespace filesupport;

namespace {

void Unpack(IByteStream& inSource, OByteStream& outSink) {
    std::vector<std::uint8_t> block(kCodingBlockSize);
    IBufferedByteStream buffer(inSource, 2 * kCodingBlockSize, kCodingBlockSize);
    // The buffer relies on the length, and files that the system generates on reading have none.
    bool const hasLength = inSource.Length() != 0;
    IRLEByteStream decoder(hasLength ? static_cast<IByteStream&>(buffer) : inSource);
    try {
        for (std::uint32_t count = kCodingBlockSize; count == kCodingBlockSize;) {
            count = decoder.ReadUpTo(block.data(), kCodingBlockSize);
            outSink.WriteBlock(block.data(), count);
        }
    } catch (eof_error const&) {
        throw unreadable_error("is not packed, or damaged: it ends inside a packet");
    }
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    CodeFile("unpack", inArguments, ioDiagnostics, Unpack);
}

} // namespace

Verb const kUnpackVerb = {
    "unpack",
    "IN OUT",
    "the bytes of a file that 'pack' coded",
    "Writes to the file OUT what the file IN holds in run-length coding (PackBits). OUT is\n"
    "replaced when all is written, and stays what it was if anything fails; it may be IN.\n"
    "The coding has neither a mark nor a sum: only an IN that ends too soon is found out.\n",
    {"help"},
    Run,
};

} // namespace brindle::host
