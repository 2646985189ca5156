#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Errors.h"
#include "platform/linux/FileDescriptor.h"

#include <fcntl.h>

#include <string>

namespace brindle::platform {

/// A path in the form in which the system's *at calls take it: an open directory and what follows.
/// That gives a path of any length to a kernel that takes so much at a time. A path that the kernel
/// takes whole is left whole and opens nothing.
class SystemPath {
public:
    /// Takes library text.
    explicit SystemPath(UTF16String const& inPath);

    /// Takes a path of the system, relative to the open directory `inBase`, which outlives this.
    SystemPath(int inBase, std::string inNativePath);

    /// Why the path leads nowhere, or 0. With an error the calls below fail.
    ErrorCode Error() const noexcept { return mError; }

    int Directory() const noexcept { return mOpened.IsOpen() ? mOpened.Get() : mBase; }
    char const* Tail() const noexcept { return mNative.c_str() + mTailStart; }

    /// Makes the tail name a link itself where a trailing separator would follow it.
    void DropTrailingSeparators();

    /// The number of a failure of a call on this path.
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
