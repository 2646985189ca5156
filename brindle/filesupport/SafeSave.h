#pragma once

#include <brindle/Export.h>
#include <brindle/filesupport/File.h>
#include <brindle/utility/SystemError.h>

#include <cstddef>
#include <memory>

namespace brindle::platform {
class TemporaryFile;
}

namespace brindle::filesupport {

/// Saves a file without a moment at which it could be lost, where something else writes the new
/// version by its name:
///
///     SafeSave save(file);
///     std::ofstream(NativePath(save.GetTempFile())) << text;
///     save.Commit();
///
/// Until `Commit` the old version stands, whatever fails. To write the new version directly, use
/// `OSafeSaveStream`, which leaves nothing behind even when the process is killed.
///
/// One thread at a time. Savers of one target, in any number of threads and processes, have a temp
/// file each, also on machines that share a directory, and the last `Commit` wins.
class BRN_API SafeSave {
public:
    /// Creates nothing yet.
    explicit SafeSave(File& inTarget);
    explicit SafeSave(File const& inTarget);
    SafeSave(SafeSave const&) = delete;
    SafeSave& operator=(SafeSave const&) = delete;
    /// Removes a temp file that was not committed, if it is this save's. Throws nothing.
    ~SafeSave();

    /// The file to write. The first call creates it, empty, beside the target, under a name that no
    /// other save has: title, process, thread and a counter, and the extension in lower case. Only
    /// its owner may read it, unless there is no old version. Where it cannot be created, this is
    /// the name that it would have, and writing it will fail.
    File& GetTempFile();

    /// Puts the temp file in place of the target, which need not exist, in one step. When it
    /// returns, the new version is on the disk, and `GetTempFile` names the target. At every
    /// moment, and after a crash, the target is the whole old version or the whole new one. A
    /// target that is a link stays one, and what it points to is replaced. The new version gets the
    /// permissions of the old one; its owner and group as well, as far as this process may set
    /// them, and without them it gives nobody more rights than the old version did. Who is reading
    /// the old version keeps reading it.
    ///
    /// Throws `rename_file` with the temp file and the target's name, and leaves the old version
    /// alone: if there is no temp file, or nobody has written it, or it is not a regular file, or
    /// still open for writing; if the target is not a regular file, may not be written, or is open
    /// for writing; and if the system refuses. Only a disk that fails at the very end may leave the
    /// new version.
    void Commit();

    /// Removes from a directory, but not from those below it, what saves left there whose process
    /// was killed: temp files, and new versions of `OSafeSaveStream` where that needs a name. Call
    /// it at start-up, for instance. Returns how many files that were.
    ///
    /// A file is removed only if it is certain that a save created it and that this save has ended;
    /// no save of any process is disturbed. So a file stays where that cannot be told: if somebody
    /// has read it meanwhile, if it is empty and has no temp file's name, and on file systems other
    /// than the usual ones of local disks. Throws `dir_exception` if the directory cannot be read.
    static std::size_t RemoveAbandoned(Dir const& inDir);

private:
    void CreateTempFile();

    File mTarget;
    File mTemp;
    bool mHasTempName = false;
    std::unique_ptr<platform::TemporaryFile> mTempFile; // none where it could not be created
    utility::SystemError mTempError = utility::SystemError::kFileNotFound; // why there is none
};

} // namespace brindle::filesupport
