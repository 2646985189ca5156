#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>

#include <cstdint>
#include <iosfwd>

namespace brindle::filesupport {

/// Inserts a path into streams of all unit types of text, for logs and tests:
///
///     std::cerr << file << ": cannot be read\n";
///
/// The path is inserted as `FullPath` gives it, with drives and backslashes, so that two objects
/// that differ look different; as UTF-8 unless the units are of 16 bits. For people there is
/// `DisplayPath`, and for other programs `NativePath`.
BRN_API std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream,
                                             File const& inFile);
BRN_API std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                                      File const& inFile);
BRN_API std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                                     File const& inFile);
BRN_API std::basic_ostream<char>& operator<<(std::basic_ostream<char>& ioStream, Dir const& inDir);
BRN_API std::basic_ostream<std::uint16_t>& operator<<(std::basic_ostream<std::uint16_t>& ioStream,
                                                      Dir const& inDir);
BRN_API std::basic_ostream<std::uint8_t>& operator<<(std::basic_ostream<std::uint8_t>& ioStream,
                                                     Dir const& inDir);

} // namespace brindle::filesupport
