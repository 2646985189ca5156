#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace brindle::platform {

enum class FileKind {
    kFile,      ///< a regular file
    kDirectory, ///< a directory
    kPipe,      ///< a FIFO
    kSocket,    ///< a socket
    kDevice,    ///< a character or block device
    kOther,     ///< whatever else a system may hold
};

/// Whom a new file lets read it.
enum class Readers {
    kOwner,
    kAnybody ///< whom the process's settings let
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

/// Inspects what stands at the path; a symbolic link counts as what it points to. Opens nothing, so
/// it neither waits for a FIFO nor disturbs a device. Errors: 2, 3, 5, 1921.
Result<FileInfo> Inspect(UTF16String const& inPath);

/// True if anything stands at the path, be it a link that leads nowhere; false on any failure.
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

    /// Reads at the position. The value is the count delivered, less than asked only at the end.
    Result<std::size_t> Read(void* outBytes, std::size_t inCount);

    /// Writes all the bytes at the position, or fails; 112 a full disk or quota, 223 over the
    /// limit.
    ErrorCode Write(void const* inBytes, std::size_t inCount);

    Result<std::uint64_t> Position() const { return {mPosition, kError_None}; }
    /// Any position up to 2^63 - 1 is allowed, also beyond the end. Error: 87.
    ErrorCode SetPosition(std::uint64_t inPosition);
    Result<std::uint64_t> Size() const;

private:
    friend Result<OpenFile> OpenForReading(UTF16String const&);
    friend Result<OpenFile> OpenForWriting(UTF16String const&);
    friend Result<OpenFile> CreateNewFile(UTF16String const&, Readers);
    static constexpr std::intptr_t kInvalidHandle = -1;
    explicit OpenFile(std::intptr_t inHandle) noexcept : mHandle(inHandle) {}

    std::intptr_t mHandle = kInvalidHandle;
    std::uint64_t mPosition = 0;
};

/// Opens an existing regular file for reading, sharing it with other readers. What is no regular
/// file is refused without being opened. Errors: 2, 3, 5 (also what is no regular file), 32 a
/// writer has it open.
Result<OpenFile> OpenForReading(UTF16String const& inPath);

/// The whole content of a small file. Errors as for `OpenForReading`; 13 more than `inMost` bytes.
Result<std::string> ReadContent(UTF16String const& inPath, std::size_t inMost);

/// Opens an existing regular file for writing at its beginning, alone; nothing is created or cut.
/// Errors as for reading; 32 anybody has it open; 19 a read-only file system.
Result<OpenFile> OpenForWriting(UTF16String const& inPath);

/// Makes an empty file and opens it for writing, alone. Errors as for `CreateEmptyFile`; 80, or 5,
/// if anything stands at the path, a link that leads nowhere too.
Result<OpenFile> CreateNewFile(UTF16String const& inPath, Readers inReaders);

/// Makes an empty file, or empties an existing regular one that nobody has open (32). Error 5 where
/// a directory or a special file stands.
ErrorCode CreateEmptyFile(UTF16String const& inPath);

/// Removes a file, or a link and not what it points to. Error 5 for a directory.
ErrorCode DeleteFile(UTF16String const& inPath);

/// Renames a file or directory in one step. Error 183 if something stands at the new path already.
ErrorCode Move(UTF16String const& inFrom, UTF16String const& inTo);

/// Gives the file the content, in one step: whoever looks, and after a crash or a kill at any
/// moment, finds the whole old file or the whole new one, and a failure leaves the old one alone. A
/// link stays a link, and what it points to is replaced. Permissions of an old file are kept. The
/// content is on the disk when this returns. Errors: 5 (also an old file that may not be written, a
/// directory that takes no new file beside it, and what is no regular file), 32 anybody has the old
/// file open, 112, 223.
ErrorCode ReplaceContent(UTF16String const& inPath, void const* inBytes, std::size_t inCount);

/// Puts the regular file `inFrom` in place of `inTo`, which need not exist, with the promises of
/// `ReplaceContent`; then nothing stands at `inFrom`. It also works between file systems. Whoever
/// reads the old file goes on with it, and of several who replace it the last one wins. Errors: 2,
/// 3; 5 also what is no regular file on either side; 32 anybody has either file open for writing;
/// 1117 the disk failed, possibly behind the replacing; 1921 `inFrom` is a link.
ErrorCode ReplaceFile(UTF16String const& inFrom, UTF16String const& inTo);

/// Adds the content at the end of the file, which is made if it is missing. A failure takes back
/// what was added. Errors as for `ReplaceContent`.
ErrorCode AppendContent(UTF16String const& inPath, void const* inBytes, std::size_t inCount);

} // namespace brindle::platform
