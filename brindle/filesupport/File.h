#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

namespace brindle::filesupport {

/// The path of a file in normal form, which `DirHelper` describes; but a trailing backslash is
/// kept.
class BRN_API FileHelper {
public:
    FileHelper() = default;
    /// Brings the path into normal form. It may be relative or empty.
    explicit FileHelper(UTF16String const& inPath);
    /// The file `inName` of the directory.
    FileHelper(Dir const& inDir, UTF16String const& inName);
    /// From text in the system's 8-bit code page.
    explicit FileHelper(std::string const& inPath);

    /// In normal form.
    UTF16String const& Path() const noexcept { return mPath; }

    /// The path with the prefix that lifts the system's limit on its length.
    UTF16String FullNativePath() const;

private:
    UTF16String mPath;
};

/// Which part of a file `File::Size` measures. Every selector that includes the data gives the
/// length of the file; files have no resource part, whose size is 0.
enum FileSizeSelector : std::int32_t {
    kFileSize_Data = 0,           ///< the length of the file
    kFileSize_Resource = 1,       ///< 0
    kFileSize_Total = 2,          ///< the length of the file
    kFileSize_DataOnDisk = 3,     ///< the length of the file
    kFileSize_ResourceOnDisk = 4, ///< 0
    kFileSize_TotalOnDisk = 5     ///< the length of the file
};

/// A value that names a file, which need not exist. It holds no handle and no lock, and caches
/// nothing:
///
///     File const file(dir, u"notes.txt"_utf16);
///     if (!file.Exists()) { file.Create(); }
///
/// The operations from `Exists` on access the file system, and report its state at that moment; the
/// constructors do so only to resolve an alias. Different objects may be used on different threads.
///
/// Beside the standard library: as a `std::filesystem::path` with the operations on it as members;
/// `FileFromPath` and `ToPath` (brindle/filesupport/FilesystemPath.h) convert. It has `==`, `<` and
/// a `std::hash`, by its path, and is inserted into streams by brindle/filesupport/PathStreams.h.
class BRN_API File {
public:
    File() = default;
    /// Brings the path into normal form, and does not ask the file system.
    explicit File(UTF16String const& inPath) : mHelper(inPath) {}
    explicit File(FileHelper const& inHelper) : mHelper(inHelper) {}
    /// Paths in native form become files by `FileFromNative` (brindle/filesupport/NativePath.h).
    template <typename Text,
              std::enable_if_t<brindle::utility::impl::kIsOtherThanUTF16<Text>, int> = 0>
    explicit File(Text const&) {
        static_assert(brindle::utility::impl::kNever<Text>,
                      "use FileFromNative of brindle/filesupport/NativePath.h for a native path");
    }
    /// The file `inName` of `inDir`.
    File(Dir const& inDir, UTF16String const& inName) : mHelper(inDir, inName) {}
    /// The same; but with `inResolveAlias`, if that file is a shortcut to a file, the target of the
    /// shortcut.
    File(Dir const& inDir, UTF16String const& inName, bool inResolveAlias);

    /// The path itself, without the operations.
    FileHelper const& Helper() const noexcept { return mHelper; }
    FileHelper& Helper() noexcept { return mHelper; }

    /// The path in normal form.
    UTF16String FullPath() const { return mHelper.Path(); }
    /// The path in the system's 8-bit code page.
    std::string FullPathMultiByte() const;
    /// Title and extension together.
    UTF16String GetName() const;
    /// The last component without its extension.
    UTF16String GetTitle() const;
    /// The extension with its ".", empty if there is none. A path without a separator has none.
    UTF16String GetExtension(bool inToLower) const;
    /// The directory that holds the file; empty for a path without a separator.
    Dir Parent() const;

    /// True if there is anything at the path, also a directory; false on any failure.
    bool Exists() const;
    /// Times in 100-nanosecond ticks since the start of 1601 UTC. Throw `file_not_found_exception`
    /// if there is no such file, `file_exception` on any other failure.
    std::uint64_t Modified() const;
    std::uint64_t Created() const;
    /// Sets what `Modified` returns; a file system may keep it less exactly. Throws as `Modified`.
    void SetModified(std::uint64_t inTicks) const;
    /// Bytes; 0 on any failure.
    std::uint64_t Size(FileSizeSelector inSelector) const;
    /// The length of the file.
    std::uint64_t Size() const { return Size(kFileSize_Data); }

    /// Creates an empty file, or empties an existing one. Throws a class derived from
    /// `create_exception`.
    void Create() const;
    /// Throws `file_delete_exception`.
    void Delete() const;
    /// Gives the file another name in the same directory, and this object the new path. Nothing is
    /// ever replaced: a name that is taken is a failure. Throws `rename_file`.
    void Rename(UTF16String const& inNewName);

private:
    FileHelper mHelper;
};

/// Compares the two paths unit by unit, upper and lower case apart.
inline bool operator==(File const& inLHS, File const& inRHS) noexcept {
    return inLHS.Helper().Path() == inRHS.Helper().Path();
}

inline bool operator!=(File const& inLHS, File const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

/// Orders paths by their units, for containers; `CompareFileNames` orders names for people.
inline bool operator<(File const& inLHS, File const& inRHS) noexcept {
    return inLHS.Helper().Path() < inRHS.Helper().Path();
}

inline bool operator>(File const& inLHS, File const& inRHS) noexcept {
    return inRHS < inLHS;
}

inline bool operator<=(File const& inLHS, File const& inRHS) noexcept {
    return !(inRHS < inLHS);
}

inline bool operator>=(File const& inLHS, File const& inRHS) noexcept {
    return !(inLHS < inRHS);
}

/// The native path, for a `config::ReplacementValue`.
BRN_API UTF16String ReplacementText(File const& inFile);

} // namespace brindle::filesupport

/// Agrees with `==`.
template <>
struct std::hash<brindle::filesupport::File> {
    /// Equal paths have equal hashes, within one run of a program.
    BRN_API std::size_t operator()(brindle::filesupport::File const& inFile) const noexcept;
};
