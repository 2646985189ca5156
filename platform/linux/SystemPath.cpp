#include "platform/linux/SystemPath.h"

#include "platform/Paths.h"
#include "platform/linux/ErrnoTable.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>
#include <utility>

namespace brindle::platform {

SystemPath::SystemPath(UTF16String const& inPath) {
    auto native = NativePath(inPath);
    mNative = std::move(native.value);
    mError = native.error;
    if (mError == kError_None) {
        Shorten();
    }
}

SystemPath::SystemPath(int inBase, std::string inNativePath)
    : mNative(std::move(inNativePath)), mBase(inBase) {
    Shorten();
}

void SystemPath::Shorten() {
    // The kernel counts the NUL behind the path.
    if (mNative.size() < PATH_MAX) {
        return;
    }
    auto const bothSlashes = [](char inLHS, char inRHS) { return inLHS == '/' && inRHS == '/'; };
    mNative.erase(std::unique(mNative.begin(), mNative.end(), bothSlashes), mNative.end());
    while (mNative.size() - mTailStart >= PATH_MAX) {
        auto const slash = mNative.rfind('/', mTailStart + PATH_MAX - 2);
        if (slash == std::string::npos || slash < mTailStart) {
            mError = kError_NameTooLong;
            return;
        }
        auto const chunk = mNative.substr(mTailStart, slash + 1 - mTailStart);
        FileDescriptor next(Uninterrupted([&] {
            return ::openat(Directory(), chunk.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        }));
        if (!next.IsOpen()) {
            mError = errno == ENOENT ? kError_PathNotFound : ErrorFromErrno(errno);
            return;
        }
        mOpened = std::move(next);
        mTailStart = slash + 1;
    }
}

void SystemPath::DropTrailingSeparators() {
    while (mNative.size() > mTailStart + 1 && mNative.back() == '/') {
        mNative.pop_back();
    }
}

ErrorCode SystemPath::ErrorOf(int inErrno) const {
    if (inErrno != ENOENT) {
        return ErrorFromErrno(inErrno);
    }
    std::string tail = Tail();
    while (tail.size() > 1 && tail.back() == '/') {
        tail.pop_back();
    }
    if (tail.empty()) {
        return kError_PathNotFound;
    }
    auto const slash = tail.rfind('/');
    if (slash == std::string::npos) {
        return kError_FileNotFound;
    }
    tail.resize(slash + 1);
    struct stat parent {};
    return ::fstatat(Directory(), tail.c_str(), &parent, 0) == 0 ? kError_FileNotFound
                                                                 : kError_PathNotFound;
}

std::string SystemPath::TailDirectory() const {
    std::string tail = Tail();
    auto const slash = tail.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    tail.resize(slash + 1);
    return tail;
}

std::string SystemPath::TailName() const {
    std::string const tail = Tail();
    return tail.substr(tail.rfind('/') + 1);
}

Result<std::string> AbsoluteNativePath(UTF16String const& inPath) {
    auto path = NativePath(inPath);
    if (!path || (!path.value.empty() && path.value.front() == '/')) {
        return path;
    }
    std::unique_ptr<char, decltype(&std::free)> const current(::getcwd(nullptr, 0), &std::free);
    if (current == nullptr) {
        return {{}, ErrorFromErrno(errno)};
    }
    return {std::string(current.get()) + '/' + path.value, kError_None};
}

} // namespace brindle::platform
