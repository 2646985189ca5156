#pragma once

#include "utility/src/base/Mutex.h"

#include <brindle/filesupport/Dir.h>
#include <brindle/filesupport/File.h>

#include <boost/noncopyable.hpp>

namespace brindle::filesupport {

inline bool IsUnknown(UTF16String const& inPath) noexcept {
    return inPath.empty();
}

template <typename FileOrDir>
bool IsUnknown(FileOrDir const& inPath) noexcept {
    return inPath.Helper().Path().empty();
}

/// A path, `File` or `Dir` that is found when it is first needed. An empty one counts as not yet
/// found. Any thread may call.
template <typename Path>
class CachedPath : boost::noncopyable {
public:
    /// What is kept, or else what `inFind` returns. `inFind` is called without a lock, so threads
    /// may call it at the same time, and what was set or found meanwhile wins.
    template <typename Find>
    Path GetOrFind(Find inFind) {
        {
            utility::MutexLock const lock(mMutex);
            if (!IsUnknown(mPath)) {
                return mPath;
            }
        }
        Path found = inFind();
        utility::MutexLock const lock(mMutex);
        if (IsUnknown(mPath)) {
            mPath = found;
        }
        return mPath;
    }

    void Set(Path const& inPath) {
        utility::MutexLock const lock(mMutex);
        mPath = inPath;
    }

private:
    utility::Mutex mMutex;
    Path mPath BRN_GUARDED_BY(mMutex);
};

} // namespace brindle::filesupport
