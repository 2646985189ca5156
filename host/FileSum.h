#pragma once

#include "host/UnreadableFile.h"

#include <brindle/filesupport/File.h>

#include <cstdint>

namespace brindle::host {

struct FileSum {
    std::uint32_t crc = 0; ///< CRC-32 of the content
    std::uint64_t size = 0;
};

/// Reads a regular file to its end. Throws `unreadable_error`. Any thread may call.
FileSum SumOf(filesupport::File const& inFile);

} // namespace brindle::host
