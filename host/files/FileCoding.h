#pragma once

#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"

#include <brindle/filesupport/ByteStream.h>

#include <cstdint>
#include <string>

namespace brindle::host {

/// How many bytes are read or written at a time.
constexpr std::uint32_t kCodingBlockSize = 256 * 1024;

/// Reads a source to its end and writes the coded or decoded bytes to a sink, in large blocks.
/// Throws `unreadable_error` for a source that is damaged, and does not catch what the streams
/// throw.
using Coding = void (*)(filesupport::IByteStream& inSource, filesupport::OByteStream& outSink);

/// Runs the verb of this name, which codes a file IN into a file OUT; they may be the same file.
/// Failures are reported. After a failure, or if the process is killed, OUT is unchanged.
void CodeFile(std::string const& inVerb, Arguments const& inArguments, Diagnostics& ioDiagnostics,
              Coding inCoding);

} // namespace brindle::host
