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

class BRN_API file_exception : public std::exception, public config::FileFailure {
public:
    explicit file_exception(File const& inFile);
    file_exception(File const& inFile, char const* inKey);

    char const* what() const noexcept override { return mKey.c_str(); }
    File const& GetFile() const noexcept { return mFile; }

private:
    File mFile;
    std::string mKey;
};

class BRN_API file_not_found_exception : public file_exception {
public:
    explicit file_not_found_exception(File const& inFile);
};

class BRN_API file_delete_exception : public file_exception {
public:
    explicit file_delete_exception(File const& inFile);
};

class BRN_API create_exception : public file_exception {
public:
    explicit create_exception(File const& inFile);

protected:
    create_exception(File const& inFile, char const* inKey);
};

class BRN_API create_fnf_exception : public create_exception {
public:
    explicit create_fnf_exception(File const& inFile);
};

class BRN_API create_locked_exception : public create_exception {
public:
    explicit create_locked_exception(File const& inFile);
};

class BRN_API create_accessdenied_exception : public create_exception {
public:
    explicit create_accessdenied_exception(File const& inFile);
};

class BRN_API create_invalidpath_exception : public create_exception {
public:
    explicit create_invalidpath_exception(File const& inFile);
};

class BRN_API rename_file : public file_exception {
public:
    rename_file(File const& inFile, UTF16String const& inNewName);
    rename_file(File const& inFile, UTF16String const& inNewName, char const* inKey);

    UTF16String const& GetNewName() const noexcept { return mNewName; }
    UTF16String NewName() const override { return mNewName; }

private:
    UTF16String mNewName;
};

class BRN_API dir_exception : public std::exception, public config::FileFailure {
public:
    explicit dir_exception(Dir const& inDir);
    dir_exception(Dir const& inDir, char const* inKey);

    char const* what() const noexcept override { return mKey.c_str(); }
    Dir const& GetDir() const noexcept { return mDir; }

private:
    Dir mDir;
    std::string mKey;
};

class BRN_API dir_not_found_exception : public dir_exception {
public:
    explicit dir_not_found_exception(Dir const& inDir);
};

/// For clients; the library itself does not throw it.
class BRN_API dir_delete_exception : public dir_exception {
public:
    explicit dir_delete_exception(Dir const& inDir);
    dir_delete_exception(Dir const& inDir, char const* inKey);
};

class BRN_API rename_dir : public dir_exception {
public:
    rename_dir(Dir const& inDir, UTF16String const& inNewName);
    rename_dir(Dir const& inDir, UTF16String const& inNewName, char const* inKey);

    UTF16String const& GetNewName() const noexcept { return mNewName; }
    UTF16String NewName() const override { return mNewName; }

private:
    UTF16String mNewName;
};

class BRN_API rename_dir_already_exists : public rename_dir {
public:
    rename_dir_already_exists(Dir const& inDir, UTF16String const& inNewName);
};

} // namespace brindle::filesupport
