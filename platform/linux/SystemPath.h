#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"
#include "platform/linux/FileDescriptor.h"

#include <fcntl.h>

#include <string>

namespace brindle::platform {

/// A path in the form that the system's *at calls take: an open directory and the rest of the path.
/// That makes paths possible that are longer than the kernel takes at once: their directories are
/// opened piece by piece. For a path that is short enough nothing is opened.
class SystemPath {
public:
    /// Takes library text.
    explicit SystemPath(UTF16String const& inPath);

    /// Takes a path of the system, relative to the open directory `inBase`, which outlives this.
    SystemPath(int inBase, std::string inNativePath);

    /// Why the path cannot be used, or 0. With an error the calls below fail.
    ErrorCode Error() const noexcept { return mError; }

    int Directory() const noexcept { return mOpened.IsOpen() ? mOpened.Get() : mBase; }
    char const* Tail() const noexcept { return mNative.c_str() + mTailStart; }

    /// Removes trailing separators, so that the tail names a link itself and not what it points to.
    void DropTrailingSeparators();

    /// The error of a call on this path that failed with this `errno`.
    ErrorCode ErrorOf(int inErrno) const;

    /// The directory part of the tail, "." if it has none, and the last name, empty if the tail
    /// ends with a separator.
    std::string TailDirectory() const;
    std::string TailName() const;

private:
    void Shorten();

    std::string mNative;
    std::size_t mTailStart = 0;
    FileDescriptor mOpened;
    int mBase = AT_FDCWD;
    ErrorCode mError = kError_None;
};

} // namespace brindle::platform
