#include <brindle/filesupport/FileExceptions.h>

#include <brindle/config/ErrorCodes.h>

namespace brindle::filesupport {

file_exception::file_exception(File const& inFile) : file_exception(inFile, config::kKey_File) {}

file_exception::file_exception(File const& inFile, char const* inKey) : mFile(inFile), mKey(inKey) {
    SetPath(inFile.FullPath());
}

file_not_found_exception::file_not_found_exception(File const& inFile)
    : file_exception(inFile, config::kKey_FileNotFound) {}

file_delete_exception::file_delete_exception(File const& inFile)
    : file_exception(inFile, config::kKey_FileDelete) {}

create_exception::create_exception(File const& inFile)
    : create_exception(inFile, config::kKey_Create) {}

create_exception::create_exception(File const& inFile, char const* inKey)
    : file_exception(inFile, inKey) {}

create_fnf_exception::create_fnf_exception(File const& inFile)
    : create_exception(inFile, config::kKey_CreateNotFound) {}

create_locked_exception::create_locked_exception(File const& inFile)
    : create_exception(inFile, config::kKey_CreateLocked) {}

create_accessdenied_exception::create_accessdenied_exception(File const& inFile)
    : create_exception(inFile, config::kKey_CreateAccessDenied) {}

create_invalidpath_exception::create_invalidpath_exception(File const& inFile)
    : create_exception(inFile, config::kKey_CreateInvalidPath) {}

rename_file::rename_file(File const& inFile, UTF16String const& inNewName)
    : rename_file(inFile, inNewName, config::kKey_FileRename) {}

rename_file::rename_file(File const& inFile, UTF16String const& inNewName, char const* inKey)
    : file_exception(inFile, inKey), mNewName(inNewName) {}

dir_exception::dir_exception(Dir const& inDir) : dir_exception(inDir, config::kKey_Dir) {}

dir_exception::dir_exception(Dir const& inDir, char const* inKey) : mDir(inDir), mKey(inKey) {
    SetPath(inDir.FullPath());
}

dir_not_found_exception::dir_not_found_exception(Dir const& inDir)
    : dir_exception(inDir, config::kKey_DirNotFound) {}

dir_delete_exception::dir_delete_exception(Dir const& inDir)
    : dir_delete_exception(inDir, config::kKey_DirDelete) {}

dir_delete_exception::dir_delete_exception(Dir const& inDir, char const* inKey)
    : dir_exception(inDir, inKey) {}

rename_dir::rename_dir(Dir const& inDir, UTF16String const& inNewName)
    : rename_dir(inDir, inNewName, config::kKey_DirRename) {}

rename_dir::rename_dir(Dir const& inDir, UTF16String const& inNewName, char const* inKey)
    : dir_exception(inDir, inKey), mNewName(inNewName) {}

rename_dir_already_exists::rename_dir_already_exists(Dir const& inDir, UTF16String const& inNewName)
    : rename_dir(inDir, inNewName, config::kKey_DirRenameExists) {}

} // namespace brindle::filesupport
