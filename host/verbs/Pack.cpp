#include "host/verbs/Verbs.h"

#include "host/files/FileCoding.h"

#include <brindle/console/Terminal.h>
#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/RLEByteStream.h>

#include <vector>

namespace brindle::host {

using namespace filesupport;

namespace {

void Pack(Input& ioInput, Output& ioOutput) {
    std::vector<std::uint8_t> block(kCodingBlockSize);
    OBufferedByteStream buffer(ioOutput, kCodingBlockSize, kCodingBlockSize);
    ORLEByteStream encoder(buffer);
    for (std::uint32_t count = kCodingBlockSize; count == kCodingBlockSize;) {
        count = ioInput.ReadUpTo(block.data(), kCodingBlockSize);
        encoder.WriteBlock(block.data(), count);
    }
    encoder.Flush();
    buffer.Flush();
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    auto const& names = inArguments.Operands();
    if (!names.empty() && names.back() == kStandardStream && console::OutputIsTerminal()) {
        throw usage_error("packed bytes are not written to a terminal");
    }
    CodeFile("pack", inArguments, ioDiagnostics, Pack);
}

} // namespace

Verb const kPackVerb = {
    "pack",
    "IN OUT",
    "a file in run-length coding",
    "Writes the bytes of the file IN to the file OUT in run-length coding (PackBits), which\n"
    "makes runs of equal bytes short, and other data longer by a 128th at most. OUT is\n"
    "replaced when all is written, and stays what it was if anything fails; it may be IN. A new\n"
    "OUT gets the permissions of IN. - stands for standard input or output. 'unpack' gives the\n"
    "bytes back.\n",
    {"help"},
    Run,
};

} // namespace brindle::host
