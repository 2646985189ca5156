#pragma once

#include "host/files/FileErrors.h"

#include <brindle/filesupport/File.h>

#include <cstdint>
#include <string>

namespace brindle::host {

struct FileSum {
    std::uint32_t crc = 0;  ///< CRC-32 of the content
    std::uint64_t size = 0; ///< in bytes
};

/// A CRC-32 as eight lower-case hexadecimal digits.
std::string CRCText(std::uint32_t inCRC);

/// Reads a regular file to its end. Throws `unreadable_error`. Any thread may call.
FileSum SumOf(filesupport::File const& inFile);

/// Reads whatever the name stands for to its end: a file of any kind, or "-", standard input.
/// Throws `unreadable_error`. Any thread may call, but only one reads standard input at a time.
FileSum SumOfAny(std::string const& inName);

/// As `SumOf`, but throws `unsteady_error` for a file that changes while it is read. `outModified`
/// is its time of modification in 100-nanosecond ticks since the start of 1601 UTC.
FileSum SteadySumOf(filesupport::File const& inFile, std::uint64_t& outModified);

} // namespace brindle::host
