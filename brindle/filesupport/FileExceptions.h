#pragma once

#include <brindle/Export.h>
#include <brindle/config/FileFailure.h>
#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>

#include <exception>
#include <string>

namespace brindle::filesupport {

/// @file
/// How operations on files and directories fail. Each exception carries the file or directory
/// concerned. `what()` is not a message but a localisation key with its default text,
/// "$$$/path=text", in which `@0` stands for the path and
/// `@1` for a new name.
///
/// Every exception says by `Operation()` and `Cause()` what failed and why:
///
///     try {
///         file.Delete();
///     } catch (file_exception const& exception) {
///         isReadOnly = exception.Cause() == utility::SystemError::kWriteProtected;
///     }

/// A failure with a file, and the base of the others with files.
///
/// Beside the standard library: as `std::filesystem::filesystem_error`, and a class for each reason
/// that callers tell apart.
class BRN_API file_exception : public std::exception, public config::FileFailure {
public:
    /// With the key `config::kKey_File`.
    explicit file_exception(File const& inFile);
    /// With a key of the caller, which is copied and not null.
    file_exception(File const& inFile, char const* inKey);

    /// The key with its default text, not localised.
    char const* what() const noexcept override { return mKey.c_str(); }
    File const& GetFile() const noexcept { return mFile; } ///< the file that it is about

private:
    File mFile;
    std::string mKey;
};

/// There is no such file.
class BRN_API file_not_found_exception : public file_exception {
public:
    /// With the key `config::kKey_FileNotFound`.
    explicit file_not_found_exception(File const& inFile);
};

/// A file could not be deleted.
class BRN_API file_delete_exception : public file_exception {
public:
    /// With the key `config::kKey_FileDelete`.
    explicit file_delete_exception(File const& inFile);
};

/// A file could not be created, for a reason that has no class of its own.
class BRN_API create_exception : public file_exception {
public:
    /// With the key `config::kKey_Create`.
    explicit create_exception(File const& inFile);

protected:
    /// With the key of the derived class.
    create_exception(File const& inFile, char const* inKey);
};

/// A file could not be created, because something on its path does not exist.
class BRN_API create_fnf_exception : public create_exception {
public:
    /// With the key `config::kKey_CreateNotFound`.
    explicit create_fnf_exception(File const& inFile);
};

/// A file could not be created, because the file system is read-only.
class BRN_API create_locked_exception : public create_exception {
public:
    /// With the key `config::kKey_CreateLocked`.
    explicit create_locked_exception(File const& inFile);
};

/// A file could not be created, because permission was denied.
class BRN_API create_accessdenied_exception : public create_exception {
public:
    /// With the key `config::kKey_CreateAccessDenied`.
    explicit create_accessdenied_exception(File const& inFile);
};

/// A file could not be created, because its path is not valid.
class BRN_API create_invalidpath_exception : public create_exception {
public:
    /// With the key `config::kKey_CreateInvalidPath`.
    explicit create_invalidpath_exception(File const& inFile);
};

/// A file could not be renamed, or not be put in the place of another one.
class BRN_API rename_file : public file_exception {
public:
    /// With the key `config::kKey_FileRename`.
    rename_file(File const& inFile, UTF16String const& inNewName);
    /// With a key of the caller, which is copied and not null.
    rename_file(File const& inFile, UTF16String const& inNewName, char const* inKey);

    /// The name that it was to get.
    UTF16String const& GetNewName() const noexcept { return mNewName; }
    UTF16String NewName() const override { return mNewName; }

private:
    UTF16String mNewName;
};

/// A failure with a directory, and the base of the others with directories.
///
/// Beside the standard library: as `std::filesystem::filesystem_error`, and a class for each reason
/// that callers tell apart.
class BRN_API dir_exception : public std::exception, public config::FileFailure {
public:
    /// With the key `config::kKey_Dir`.
    explicit dir_exception(Dir const& inDir);
    /// With a key of the caller, which is copied and not null.
    dir_exception(Dir const& inDir, char const* inKey);

    /// The key with its default text, not localised.
    char const* what() const noexcept override { return mKey.c_str(); }
    Dir const& GetDir() const noexcept { return mDir; } ///< the directory that it is about

private:
    Dir mDir;
    std::string mKey;
};

/// There is no such directory.
class BRN_API dir_not_found_exception : public dir_exception {
public:
    /// With the key `config::kKey_DirNotFound`.
    explicit dir_not_found_exception(Dir const& inDir);
};

/// For clients; the library itself does not throw it.
class BRN_API dir_delete_exception : public dir_exception {
public:
    /// With the key `config::kKey_DirDelete`.
    explicit dir_delete_exception(Dir const& inDir);
    /// With a key of the caller, which is copied and not null.
    dir_delete_exception(Dir const& inDir, char const* inKey);
};

/// A directory could not be renamed.
class BRN_API rename_dir : public dir_exception {
public:
    /// With the key `config::kKey_DirRename`.
    rename_dir(Dir const& inDir, UTF16String const& inNewName);
    /// With a key of the caller, which is copied and not null.
    rename_dir(Dir const& inDir, UTF16String const& inNewName, char const* inKey);

    /// The name that it was to get.
    UTF16String const& GetNewName() const noexcept { return mNewName; }
    UTF16String NewName() const override { return mNewName; }

private:
    UTF16String mNewName;
};

/// A directory could not be renamed, because the name is taken.
class BRN_API rename_dir_already_exists : public rename_dir {
public:
    /// With the key `config::kKey_DirRenameExists`.
    rename_dir_already_exists(Dir const& inDir, UTF16String const& inNewName);
};

} // namespace brindle::filesupport
