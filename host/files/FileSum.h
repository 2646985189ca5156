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

/// Throws `missing_error` or `irregular_error` unless the path leads to a regular file. Any thread
/// may call.
void RequireRegular(filesupport::File const& inFile);

/// Reads a regular file to its end. Throws `unreadable_error`. Any thread may call.
FileSum SumOf(filesupport::File const& inFile);

/// As `SumOf`, but throws `unsteady_error` for a file that changes while it is read. `outModified`
/// is its time of modification in 100-nanosecond ticks since the start of 1601 UTC.
FileSum SteadySumOf(filesupport::File const& inFile, std::uint64_t& outModified);

} // namespace brindle::host
