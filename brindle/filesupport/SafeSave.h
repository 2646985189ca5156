#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/File.h>

namespace brindle::filesupport {

/// Saves a file without a moment at which it could be lost: write the new version to the temp file,
/// close it, and `Commit`. Until then the old version stands, whatever fails.
///
/// One thread at a time. Writers of one target, in any number of threads and processes, have a temp
/// file each, and the last `Commit` wins.
class BRN_API SafeSave {
public:
    /// Chooses the temp file: beside the target, a name that is free, with the target's title and
    /// extension as far as there is room. Nothing is made.
    explicit SafeSave(File& inTarget);
    SafeSave(SafeSave const&) = delete;
    SafeSave& operator=(SafeSave const&) = delete;
    /// Removes a temp file that was not committed. Throws nothing.
    ~SafeSave();

    /// The file to write. To make it exclusively, and through no link, is the writer's part.
    File& GetTempFile() noexcept { return mTemp; }

    /// Puts the temp file in place of the target, which need not exist, in one step. When it
    /// returns, the new version is on the disk, and `GetTempFile` names the target. Whoever looks,
    /// also after a crash, finds the whole old version or the whole new one. A target that is a
    /// link stays one; what it leads to is replaced. Mode and owner of the old version are kept.
    /// Who is reading the old version goes on with it.
    ///
    /// Throws `rename_file` with the temp file and the target's name, and leaves the old version
    /// alone, if there is no temp file, or it is no regular one, or is still open for writing; if
    /// the target is no regular file, may not be written, or is open for writing; and if the system
    /// refuses. Only a disk that fails at the very end may leave the new version.
    void Commit();

private:
    File mTarget;
    File mTemp;
};

} // namespace brindle::filesupport
