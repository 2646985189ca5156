#pragma once

#include "platform/Errors.h"
#include "platform/linux/FilePlace.h"

#include <sys/stat.h>

#include <string>

namespace brindle::platform {

/// A new, hidden file in the directory of a place, which outlives this. It is removed again unless
/// it takes the place.
class NewFile {
public:
    explicit NewFile(FilePlace const& inPlace) : mPlace(inPlace) {}
    NewFile(NewFile const&) = delete;
    NewFile& operator=(NewFile const&) = delete;
    ~NewFile();

    ErrorCode Create(mode_t inMode);
    /// Open for writing once it is created.
    int Descriptor() const noexcept { return mFile.Get(); }
    /// Puts the file over whatever stands in the place; the directory is synced behind it.
    ErrorCode TakePlace();

private:
    FilePlace const& mPlace;
    std::string mName;
    FileDescriptor mFile;
    bool mHasTakenPlace = false;
};

/// Gives an open file the permissions of an old one and, where the process may, its owner.
ErrorCode TakePermissions(int inFile, struct stat const& inOld);

/// Returns when the file's content is on the disk.
ErrorCode SyncFile(int inFile);

} // namespace brindle::platform
