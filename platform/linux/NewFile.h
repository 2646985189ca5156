#pragma once

#include "platform/Errors.h"
#include "platform/linux/FilePlace.h"

#include <sys/stat.h>

#include <string>

namespace brindle::platform {

/// A new file in the directory of a place, which outlives this object. It has no name until it
/// takes the place, so that nothing is left behind by a kill; where the file system cannot make
/// such files, it has a hidden name of its own and is removed by the destructor.
class NewFile {
public:
    explicit NewFile(FilePlace const& inPlace) : mPlace(inPlace) {}
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;
    ~NewFile();

    ErrorCode Create(mode_t inMode);
    /// Open for writing once it is created.
    int Descriptor() const noexcept { return mFile.Get(); }
    /// Puts the file over whatever stands in the place, in one step.
    ErrorCode PutInPlace();
    /// The same; then syncs the directory.
    ErrorCode TakePlace();
    /// The open file, which the caller then owns.
    int ReleaseDescriptor() noexcept { return mFile.Release(); }

private:
    bool CreateNameless(mode_t inMode);
    ErrorCode GiveName();

    FilePlace const& mPlace;
    std::string mName; // empty while the file has no name that has to be removed
    FileDescriptor mFile;
};

/// True for the names that such files have where they need one.
bool IsHiddenSaveName(char const* inName) noexcept;

/// Puts an existing file over whatever stands in the place, in one step. It keeps its old name as
/// well, if the file system has hard links.
ErrorCode LinkInto(FilePlace const& inPlace, FilePlace const& inFile);

/// Gives an open file the permissions of another one and, where the process may, its owner and
/// group. Bits that would let somebody run a program with the rights of the wrong user are dropped.
ErrorCode TakePermissions(int inFile, struct stat const& inOld);

/// Returns when the file's content is on the disk.
ErrorCode SyncFile(int inFile);

} // namespace brindle::platform
