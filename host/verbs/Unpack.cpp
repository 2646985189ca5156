#include "host/verbs/Verbs.h"

#include "host/files/FileCoding.h"
#include "host/files/FileErrors.h"

#include <brindle/filesupport/RLEByteStream.h>

#include <vector>

namespace brindle::host {

using namespace filesupport;

namespace {

void Unpack(Input& ioInput, Output& ioOutput) {
    std::vector<std::uint8_t> block(kCodingBlockSize);
    IRLEByteStream decoder(ioInput);
    try {
        for (std::uint32_t count = kCodingBlockSize; count == kCodingBlockSize;) {
            count = decoder.ReadUpTo(block.data(), kCodingBlockSize);
            ioOutput.WriteBlock(block.data(), count);
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
    "replaced when all is written, and stays what it was if anything fails; it may be IN. A new\n"
    "OUT gets the permissions of IN. - stands for standard input or output.\n"
    "The coding has neither a mark nor a sum: only an IN that ends too soon is found out.\n",
    {"help"},
    Run,
};

} // namespace brindle::host
