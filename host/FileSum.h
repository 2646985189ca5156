#pragma once

#include <brindle/filesupport/File.h>

#include <cstdint>
#include <stdexcept>

namespace brindle::host {

/// A file cannot be summed; `what()` says why.
class unreadable_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct FileSum {
    std::uint32_t crc = 0; ///< CRC-32 of the content
    std::uint64_t size = 0;
};

/// Reads a regular file to its end. Throws `unreadable_error`. Any thread may call.
FileSum SumOf(filesupport::File const& inFile);

} // namespace brindle::host
