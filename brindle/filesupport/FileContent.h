#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/File.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// Whole files at once:
///
///     auto const bytes = ReadFile(file, 16 << 20);
///     UTF16String const text = utility::DecodeText(bytes.data(), bytes.size());
///     WriteFile(file, utility::Utf8(text));
namespace brindle::filesupport {

/// All bytes of a regular file, which other programs may write meanwhile. Takes no more memory than
/// the file turns out to have, whatever size the system announces. Throws
/// `file_not_found_exception`, and `file_exception` on any other failure, with the cause
/// `kFileTooLarge` if there are more than `inLimit` bytes.
[[nodiscard]] BRN_API std::vector<std::uint8_t> ReadFile(File const& inFile, std::size_t inLimit);

/// Replaces the file by these bytes, or creates it, in one step: after any failure, a kill or a
/// crash the file is the whole old or the whole new one, and when this returns, the new one is on
/// the disk. Permissions are as with `OSafeSaveStream`. Throws `rename_file` if the old version may
/// not be replaced, a class of `create_exception` if the directory takes no new file, and
/// `file_exception` if the bytes cannot be written. `inBytes` may be null if `inCount` is 0.
BRN_API void WriteFile(File const& inFile, void const* inBytes, std::size_t inCount);

/// The same for a vector and for texts, whose bytes are written as they are.
inline void WriteFile(File const& inFile, std::vector<std::uint8_t> const& inBytes) {
    WriteFile(inFile, inBytes.data(), inBytes.size());
}
inline void WriteFile(File const& inFile, UTF8String const& inText) {
    WriteFile(inFile, inText.data(), inText.size());
}
inline void WriteFile(File const& inFile, std::string_view inText) {
    WriteFile(inFile, inText.data(), inText.size());
}

} // namespace brindle::filesupport
