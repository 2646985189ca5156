#pragma once

#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"
#include "host/files/Input.h"
#include "host/files/Output.h"

#include <cstdint>
#include <string>

namespace brindle::host {

/// How many bytes are coded at a time.
constexpr std::uint32_t kCodingBlockSize = 256 * 1024;

/// Reads the input to its end and writes the coded or decoded bytes, in large blocks. Throws
/// `unreadable_error` for an input that is damaged.
using Coding = void (*)(Input& ioInput, Output& ioOutput);

/// Runs the verb of this name, which codes a file IN into a file OUT; they may be the same file,
/// and
/// "-" stands for the standard streams. Failures are reported. After a failure, or if the process
/// is killed, OUT is unchanged.
void CodeFile(std::string const& inVerb, Arguments const& inArguments, Diagnostics& ioDiagnostics,
              Coding inCoding);

} // namespace brindle::host
