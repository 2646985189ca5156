#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"

#include <cstddef>
#include <cstdint>

namespace brindle::platform {

/// A file of which this process is the only writer for as long as it has it open, and which grows
/// at its end. Move-only; closes at destruction. One thread at a time.
class LogFile {
public:
    /// Creates an empty log in the place of the regular file `inPath`, which need not exist. The
    /// old file gets the name `inPrevious`, in the place of whatever file has that name, or is
    /// removed if `inPrevious` is empty or cannot be replaced. The new file has the permissions of
    /// the old one. Each name changes in one step: at every moment, and after a failure or a kill,
    /// `inPath` names the old log or the new one. (The exception is a file system without hard
    /// links, on which a kill may leave only the old log, under its new name.) A link at `inPath`
    /// stays one, and what it points to is replaced.
    ///
    /// Errors: 5 something else than a regular file stands there, or the file or its directory may
    /// not be written; 32 somebody writes it, such as a process that has it as its log; 3, 19, 112,
    /// 206, 1921.
    static Result<LogFile> Start(UTF16String const& inPath, UTF16String const& inPrevious = {});

    LogFile() noexcept = default;
    LogFile(LogFile&& inOther) noexcept;
    LogFile& operator=(LogFile&& inOther) noexcept;
    ~LogFile();

    /// Appends all the bytes or, after a failure, none of them. The system has them when this
    /// returns, so that they survive the process. Errors: 112, 223, 1117.
    ErrorCode Append(void const* inBytes, std::size_t inCount);

private:
    static constexpr std::intptr_t kInvalidHandle = -1;
    explicit LogFile(std::intptr_t inHandle) noexcept : mHandle(inHandle) {}

    std::intptr_t mHandle = kInvalidHandle;
};

} // namespace brindle::platform
