#pragma once

#include <brindle/filesupport/File.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace brindle::host {

/// A file cannot be summed; `what()` says why.
class unreadable_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// There is no such file.
class missing_error : public unreadable_error {
public:
    missing_error() : unreadable_error("no such file or directory") {}
};

/// What is there is no file of bytes.
class irregular_error : public unreadable_error {
public:
    using unreadable_error::unreadable_error;
};

struct FileSum {
    std::uint32_t crc = 0; ///< CRC-32 of the content
    std::uint64_t size = 0;
};

/// Eight lower-case hexadecimal digits.
std::string CRCText(std::uint32_t inCRC);

/// Throws `missing_error` or `irregular_error` unless a regular file is there. Any thread may call.
void RequireRegular(filesupport::File const& inFile);

/// Reads a regular file to its end. Throws `unreadable_error`. Any thread may call.
FileSum SumOf(filesupport::File const& inFile);

/// The same of a file that stays as it is: one that changes meanwhile is unreadable.
/// `outModified` is in 100-nanosecond ticks since the start of 1601 UTC.
FileSum SteadySumOf(filesupport::File const& inFile, std::uint64_t& outModified);

} // namespace brindle::host
