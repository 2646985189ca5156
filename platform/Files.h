#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

#include <cstddef>
#include <cstdint>

namespace brindle::platform {

enum class FileKind {
    kFile,      ///< a regular file
    kDirectory, ///< a directory
    kPipe,      ///< a FIFO
    kSocket,    ///< a socket
    kDevice,    ///< a character or block device
    kOther,     ///< anything else
};

/// Who may read a new file.
enum class Readers {
    kOwner,
    kAnybody ///< those to whom the process's settings give access
};

/// With whom a reader shares a file. Sharing is advisory: it concerns the users of this library,
/// and programs that lock whole files.
enum class Sharing {
    kReaders,  ///< with readers: nobody writes it in place meanwhile, and one who does is a refusal
    kEverybody ///< with everybody: no lock is taken and none is respected, as programs do that only
               ///< look
};

/// What tells one file or directory from every other on the machine while it exists.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;

    friend bool operator==(FileIdentity const& inLHS, FileIdentity const& inRHS) noexcept {
        return inLHS.device == inRHS.device && inLHS.number == inRHS.number;
    }
};

/// Times are 100-nanosecond ticks since the start of 1601 UTC. Where a file system keeps no
/// creation time, `created` is the earlier of the last write and the last change of status.
struct FileInfo {
    FileKind kind = FileKind::kOther;
    std::uint64_t size = 0;
    std::uint64_t created = 0;
    std::uint64_t modified = 0;
    FileIdentity identity;
};

/// Inspects what is at the path; a symbolic link counts as what it points to. Opens nothing, so
/// that it neither waits for a FIFO nor disturbs a device. Errors: 2, 3, 5, 1921.
Result<FileInfo> Inspect(UTF16String const& inPath);

/// Sets the time of the last write, in 100-nanosecond ticks since the start of 1601 UTC; follows
/// links. A file system may keep it less exactly. Errors: 2, 3, 5, 19, 1921.
ErrorCode SetModified(UTF16String const& inPath, std::uint64_t inTicks);

/// True if the name is taken, also by a dangling link; false on any failure.
bool IsNameTaken(UTF16String const& inPath);

/// True if the path itself is a symbolic link, whatever it points to; false on any failure.
bool IsSymbolicLink(UTF16String const& inPath);

/// True for a regular file, or a link to one, that this process may execute; false on any failure.
bool IsExecutable(UTF16String const& inPath);

/// An open regular file with a position. Move-only; closes at destruction. One thread at a time.
class OpenFile {
public:
    OpenFile() noexcept = default;
    OpenFile(OpenFile&& inOther) noexcept;
    OpenFile& operator=(OpenFile&& inOther) noexcept;
    ~OpenFile();

    bool IsOpen() const noexcept { return mHandle != kInvalidHandle; }

    /// Reads at the position. The value is the number of bytes read, which is less than `inCount`
    /// only at the end.
    Result<std::size_t> Read(void* outBytes, std::size_t inCount);

    /// Writes all the bytes at the position, or fails; 112 a full disk or quota, 223 over the
    /// limit.
    ErrorCode Write(void const* inBytes, std::size_t inCount);

    Result<std::uint64_t> Position() const { return {mPosition, kError_None}; }
    /// Any position up to 2^63 - 1 is allowed, also beyond the end. Error: 87.
    ErrorCode SetPosition(std::uint64_t inPosition);
    Result<std::uint64_t> Size() const;
    /// The open file itself, whatever stands under its name by now.
    Result<FileInfo> Inspect() const;

private:
    friend class FileReplacement;
    friend Result<OpenFile> OpenForReading(UTF16String const&, Sharing);
    friend Result<OpenFile> OpenForWriting(UTF16String const&);
    friend Result<OpenFile> CreateNewFile(UTF16String const&, Readers);
    static constexpr std::intptr_t kInvalidHandle = -1;
    explicit OpenFile(std::intptr_t inHandle) noexcept : mHandle(inHandle) {}

    std::intptr_t mHandle = kInvalidHandle;
    std::uint64_t mPosition = 0;
};

/// Opens an existing regular file for reading. Anything but a regular file is refused without being
/// opened. Errors: 2, 3, 5 (also not a regular file), 32 somebody writes it in place.
Result<OpenFile> OpenForReading(UTF16String const& inPath, Sharing inSharing = Sharing::kReaders);

/// Opens an existing regular file for writing in place, from its beginning; nothing is created or
/// cut off. Nobody else may have it open, but who reads it with `Sharing::kEverybody` does not
/// count. Errors: those of `OpenForReading`; 32 somebody has it open; 19 a read-only file system.
Result<OpenFile> OpenForWriting(UTF16String const& inPath);

/// Creates an empty file and opens it as `OpenForWriting` does. Errors: those of `CreateEmptyFile`;
/// 183, or 5, if the name is taken, also by a dangling link.
Result<OpenFile> CreateNewFile(UTF16String const& inPath, Readers inReaders);

/// Creates an empty file, or empties an existing regular file that nobody has open (32). Error 5 if
/// the path leads to a directory or a special file.
ErrorCode CreateEmptyFile(UTF16String const& inPath);

/// Removes a file, or a link and not what it points to. Error 5 for a directory.
ErrorCode DeleteFile(UTF16String const& inPath);

/// Renames a file or directory in one step. Error 183 if something stands at the new path already.
ErrorCode Move(UTF16String const& inFrom, UTF16String const& inTo);

} // namespace brindle::platform
