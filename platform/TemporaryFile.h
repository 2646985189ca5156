#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"
#include "platform/Files.h"

#include <memory>

namespace brindle::platform {

/// A file that is created under a name for another program to write by that name, and then takes
/// the place of another file. The writer may empty it or put another file under its name.
/// Move-only; one thread at a time.
class TemporaryFile {
public:
    /// Creates the file, empty. While this object lives, other processes see that it belongs to a
    /// save. Errors: those of `CreateNewFile`; 183 the name is taken.
    static Result<TemporaryFile> Create(UTF16String const& inPath, Readers inReaders);

    TemporaryFile() noexcept;
    TemporaryFile(TemporaryFile&& inOther) noexcept;
    TemporaryFile& operator=(TemporaryFile&& inOther) noexcept;
    /// Leaves the file alone.
    ~TemporaryFile();

    /// Removes what stands under the name, unless that belongs to another save. Errors: those of
    /// `DeleteFile`.
    ErrorCode Remove();

    /// Puts what stands under the name in place of the regular file `inTarget`, which need not
    /// exist, with the guarantees of `FileReplacement`; then the name is free. It also works
    /// between file systems. Readers of the old file keep reading it, and of several
    /// replacements the last one wins. Errors: 2 nothing stands under the name, or nobody has
    /// written it, or it belongs to another save; 3; 5 also anything but a regular file on either
    /// side; 32 somebody has either file open for writing; 1117 the disk failed, possibly after the
    /// replacing; 1921 a link stands under the name.
    ErrorCode TakePlaceOf(UTF16String const& inTarget);

private:
    struct State;
    explicit TemporaryFile(std::unique_ptr<State> inState) noexcept;

    std::unique_ptr<State> mState;
};

} // namespace brindle::platform
