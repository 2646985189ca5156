#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/CopyBytes.h>
#include <brindle/filesupport/File.h>

#include <cstdint>

namespace brindle::filesupport {

/// The CRC-32 of a file's content, which is that of `CopyFile` and `OCRCByteStream`:
///
///     bool const isWhole = SumOf(copy) == CopyFile(original, copy, withSum).crc;
///
/// What `inProgress` throws ends the reading. Throws as `IPlatformByteStream`. Any thread may call.
[[nodiscard]] BRN_API std::uint32_t SumOf(File const& inFile, CopyProgress const& inProgress = {});

} // namespace brindle::filesupport
