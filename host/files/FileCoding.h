#pragma once

#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"

#include <brindle/filesupport/ByteStream.h>

#include <cstdint>
#include <string>

namespace brindle::host {

/// The bytes that pass from one file into another at a time.
constexpr std::uint32_t kCodingBlockSize = 256 * 1024;

/// Reads a source to its end and writes something of it to a sink, in large blocks. Throws
/// `unreadable_error` for a source that it cannot make sense of, and lets exceptions of the streams
/// pass.
using Coding = void (*)(filesupport::IByteStream& inSource, filesupport::OByteStream& outSink);

/// Runs the verb of the name: it codes a file IN into a file OUT, which may be the same file.
/// Failures are reported. After one, or a kill at any moment, OUT is what it was before.
void CodeFile(std::string const& inVerb, Arguments const& inArguments, Diagnostics& ioDiagnostics,
              Coding inCoding);

} // namespace brindle::host
