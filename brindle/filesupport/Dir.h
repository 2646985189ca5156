#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

namespace brindle::filesupport {

/// The path of a directory in normal form: backslashes between names, no long-path prefix, and no
/// doubled backslash except the two at the beginning of a network path. One trailing backslash is
/// dropped: "C:\" becomes "C:".
class BRN_API DirHelper {
public:
    DirHelper() = default;
    /// Brings the path into normal form. It may be relative or empty.
    explicit DirHelper(UTF16String const& inPath);

    UTF16String const& Path() const noexcept { return mPath; } ///< in normal form

    /// The path with the prefix that lifts the system's limit on its length.
    UTF16String FullNativePath() const;

private:
    UTF16String mPath;
};

/// A value that names a directory, which need not exist. It holds no handle and no lock, and caches
/// nothing:
///
///     for (auto file = dir.BeginFiles(false); file != dir.EndFiles(); ++file) {
///         total += (*file).Size(kFileSize_Data);
///     }
///
/// The operations from `Exists` on access the file system, and report its state at that moment; the
/// constructors do so only to resolve an alias. Different objects may be used on different threads.
///
/// Beside the standard library: as a `std::filesystem::path` with the operations on it as members;
/// `DirFromPath` and `ToPath` (brindle/filesupport/FilesystemPath.h) convert. It has `==`, `<` and
/// a `std::hash`, by its path, and is inserted into streams by brindle/filesupport/PathStreams.h.
class BRN_API Dir {
public:
    class DirIterator;
    class FileIterator;

    Dir() = default;
    /// Brings the path into normal form, and does not ask the file system.
    explicit Dir(UTF16String const& inPath) : mHelper(inPath) {}
    explicit Dir(DirHelper const& inHelper) : mHelper(inHelper) {}
    /// Paths in native form become files by `DirFromNative` (brindle/filesupport/NativePath.h).
    template <typename Text,
              std::enable_if_t<brindle::utility::impl::kIsOtherThanUTF16<Text>, int> = 0>
    explicit Dir(Text const&) {
        static_assert(brindle::utility::impl::kNever<Text>,
                      "use DirFromNative of brindle/filesupport/NativePath.h for a native path");
    }
    /// The directory `inName` of `inParent`, whose path is not empty.
    Dir(Dir const& inParent, UTF16String const& inName);
    /// The same; but with `inResolveAlias`, if that name is a shortcut to a directory, the target
    /// of the shortcut.
    Dir(Dir const& inParent, UTF16String const& inName, bool inResolveAlias);

    /// The path itself, without the operations.
    DirHelper const& Helper() const noexcept { return mHelper; }

    /// The path in normal form.
    UTF16String FullPath() const { return mHelper.Path(); }
    /// The path in the system's 8-bit code page.
    std::string FullPathMultiByte() const;
    /// The last component.
    UTF16String GetName() const;
    /// The directory that holds this one; empty for a path without a separator.
    Dir Parent() const;
    /// True for a drive, and for every path with nothing in front of its last separator.
    bool IsTopLevelDir() const;

    /// True if there is a directory at the path; false on any failure.
    bool Exists() const;
    /// Times in 100-nanosecond ticks since the start of 1601 UTC. Throw `dir_not_found_exception`
    /// if there is no such directory, `dir_exception` on any other failure.
    std::uint64_t Modified() const;
    std::uint64_t Created() const;

    /// Creates the directory; its parent must exist. A name that is taken already is no failure.
    /// Throws `dir_exception`.
    void Create() const;
    /// The same with every directory on the way that does not exist. When it returns, there is a
    /// directory at the path, or a link to one. Throws `dir_exception` with the directory that
    /// cannot be made; what was made before stays.
    void CreateAll() const;
    /// Removes the directory with everything in it. Links are removed, never what they point to.
    /// The first failure ends the removal, and what was removed by then stays removed. Throws
    /// `file_delete_exception` with the file, or `dir_exception` with the directory, that cannot be
    /// removed.
    void Delete() const;
    /// Gives the directory another name in the same parent, and this object the new path. Throws
    /// `rename_dir_already_exists` if the name is taken, otherwise `rename_dir`.
    void Rename(UTF16String const& inNewName);

    // The well-known directories. One that the system does not have is the application's directory.
    // Unless it says otherwise, each is looked up afresh at each call, and exists. Any thread may
    // call unless another one changes the environment. Hosts may replace the directories of the
    // application (CommonDirs.h).

    /// The directory of the program that the process runs, or what the host set instead; found
    /// once. Empty if the system does not say.
    static Dir AppDir();
    /// The same directory.
    static Dir PackageDir();
    /// Where programs put files that need not last.
    static Dir TempDir();
    /// Where the user's programs keep their settings; created if it does not exist.
    static Dir GlobalPrefDir();
    /// The directory for the settings of this version of the client: `GlobalPrefDir` and below it
    /// the company's name, the client's name and the client's internal version. What is missing is
    /// created for the user alone. Throws `dir_exception` if that fails.
    static Dir PrefDir();
    /// Created if it does not exist.
    static Dir UserDocsDir();
    /// What installed programs share.
    static Dir CommonFilesDir();

    // The listings are snapshots, taken as a whole when the begin iterator is made; a directory
    // that cannot be read is empty. With `inResolveAliases` a shortcut (".lnk") is listed as its
    // target, and a broken one not at all. Include DirectoryIterators.h to use them.

    ///@{
    /// The directories within this one.
    DirIterator BeginSubdirs(bool inResolveAliases) const;
    DirIterator EndSubdirs() const;
    ///@}
    ///@{
    /// Everything within this one that is not a directory.
    FileIterator BeginFiles(bool inResolveAliases) const;
    FileIterator EndFiles() const;
    ///@}
    /// The volumes of the machine, except removable ones.
    static DirIterator BeginVolumes();
    static DirIterator EndVolumes();

private:
    DirHelper mHelper;
};

/// Compares the two paths unit by unit, upper and lower case apart.
inline bool operator==(Dir const& inLHS, Dir const& inRHS) noexcept {
    return inLHS.Helper().Path() == inRHS.Helper().Path();
}

inline bool operator!=(Dir const& inLHS, Dir const& inRHS) noexcept {
    return !(inLHS == inRHS);
}

/// Orders paths by their units, for containers; `CompareFileNames` orders names for people.
inline bool operator<(Dir const& inLHS, Dir const& inRHS) noexcept {
    return inLHS.Helper().Path() < inRHS.Helper().Path();
}

inline bool operator>(Dir const& inLHS, Dir const& inRHS) noexcept {
    return inRHS < inLHS;
}

inline bool operator<=(Dir const& inLHS, Dir const& inRHS) noexcept {
    return !(inRHS < inLHS);
}

inline bool operator>=(Dir const& inLHS, Dir const& inRHS) noexcept {
    return !(inLHS < inRHS);
}

/// The native path, for a `config::ReplacementValue`.
BRN_API UTF16String ReplacementText(Dir const& inDir);

} // namespace brindle::filesupport

/// Agrees with `==`.
template <>
struct std::hash<brindle::filesupport::Dir> {
    /// Equal paths have equal hashes, within one run of a program.
    BRN_API std::size_t operator()(brindle::filesupport::Dir const& inDir) const noexcept;
};
