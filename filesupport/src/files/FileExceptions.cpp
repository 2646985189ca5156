#include <brindle/filesupport/FileExceptions.h>

namespace brindle::filesupport {

file_exception::file_exception(File const& inFile)
    : file_exception(inFile, "$$$/brindle/filesupport/error=Error with file: '@0'.") {}

file_exception::file_exception(File const& inFile, char const* inKey)
    : mFile(inFile), mKey(inKey) {}

file_not_found_exception::file_not_found_exception(File const& inFile)
    : file_exception(inFile,
                     "$$$/brindle/filesupport/FileNotFound=The file '@0' could not be found.") {}

file_delete_exception::file_delete_exception(File const& inFile)
    : file_exception(inFile, "$$$/brindle/filesupport/Delete=Could not delete the file '@0'.") {}

create_exception::create_exception(File const& inFile)
    : create_exception(inFile, "$$$/brindle/filesupport/Create=Could not create the file '@0'.") {}

create_exception::create_exception(File const& inFile, char const* inKey)
    : file_exception(inFile, inKey) {}

create_fnf_exception::create_fnf_exception(File const& inFile)
    : create_exception(inFile, "$$$/brindle/filesupport/Create/fnf=Could not create the file '@0'. "
                               "The file could not be found.") {}

create_locked_exception::create_locked_exception(File const& inFile)
    : create_exception(inFile, "$$$/brindle/filesupport/Create/locked=Could not create the file "
                               "'@0'. The disk is locked.") {}

create_accessdenied_exception::create_accessdenied_exception(File const& inFile)
    : create_exception(inFile, "$$$/brindle/filesupport/Create/accessdenied=Could not create the "
                               "file '@0'. Access was denied.") {}

create_invalidpath_exception::create_invalidpath_exception(File const& inFile)
    : create_exception(inFile, "$$$/brindle/filesupport/Create/invalidpath=Could not create the "
                               "file '@0'. The path is not valid.") {}

rename_file::rename_file(File const& inFile, UTF16String const& inNewName)
    : rename_file(inFile, inNewName,
                  "$$$/brindle/filesupport/Rename=Could not rename the file '@0' to '@1'.") {}

rename_file::rename_file(File const& inFile, UTF16String const& inNewName, char const* inKey)
    : file_exception(inFile, inKey), mNewName(inNewName) {}

dir_exception::dir_exception(Dir const& inDir)
    : dir_exception(inDir, "$$$/brindle/filesupport/Dir/error=Error with Directory: '@0'.") {}

dir_exception::dir_exception(Dir const& inDir, char const* inKey) : mDir(inDir), mKey(inKey) {}

dir_not_found_exception::dir_not_found_exception(Dir const& inDir)
    : dir_exception(inDir,
                    "$$$/brindle/filesupport/DirNotFound=The directory '@0' could not be found.") {}

dir_delete_exception::dir_delete_exception(Dir const& inDir)
    : dir_delete_exception(
          inDir, "$$$/brindle/filesupport/DirDelete=Could not delete the directory '@0'.") {}

dir_delete_exception::dir_delete_exception(Dir const& inDir, char const* inKey)
    : dir_exception(inDir, inKey) {}

rename_dir::rename_dir(Dir const& inDir, UTF16String const& inNewName)
    : rename_dir(inDir, inNewName,
                 "$$$/brindle/filesupport/DirRename=Could not rename the directory '@0' to '@1'.") {
}

rename_dir::rename_dir(Dir const& inDir, UTF16String const& inNewName, char const* inKey)
    : dir_exception(inDir, inKey), mNewName(inNewName) {}

rename_dir_already_exists::rename_dir_already_exists(Dir const& inDir, UTF16String const& inNewName)
    : rename_dir(inDir, inNewName,
                 "$$$/brindle/filesupport/DirRename/exists=Could not rename the directory '@0' to "
                 "'@1'. The directory already exists.") {}

} // namespace brindle::filesupport
