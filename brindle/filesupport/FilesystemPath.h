#pragma once

#include <brindle/filesupport/NativePath.h>

#include <filesystem>

/// Paths from and to the standard library, without loss:
///
///     File const file = FileFromPath(std::filesystem::current_path() / "a.mov");
///     auto const size = std::filesystem::file_size(ToPath(file));
namespace brindle::filesupport {

/// The file or directory at a path of the standard library; the bytes of its name are kept.
inline File FileFromPath(std::filesystem::path const& inPath) {
    return FileFromNative(inPath.string());
}
inline Dir DirFromPath(std::filesystem::path const& inPath) {
    return DirFromNative(inPath.string());
}

/// Empty for a path that the system cannot have, as with `NativePath`.
inline std::filesystem::path ToPath(File const& inFile) {
    return NativePath(inFile);
}
inline std::filesystem::path ToPath(Dir const& inDir) {
    return NativePath(inDir);
}

} // namespace brindle::filesupport
