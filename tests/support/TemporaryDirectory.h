#pragma once

#include <brindle/utility/TextTypes.h>

#include "platform/Paths.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace brindle::tests {

/// A fresh, empty directory, removed with all that is in it at the end.
class TemporaryDirectory {
public:
    explicit TemporaryDirectory(
        std::filesystem::path const& inParent = std::filesystem::temp_directory_path()) {
        mNative = (inParent / "brindle-test-XXXXXX").string();
        if (::mkdtemp(mNative.data()) == nullptr) {
            throw std::runtime_error("no temporary directory");
        }
        mPath = platform::PathFromNative(mNative);
    }
    TemporaryDirectory(TemporaryDirectory const&) = delete;
    TemporaryDirectory& operator=(TemporaryDirectory const&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(mNative, ignored);
    }

    /// The library's form of the path, or of the path of a name in the directory.
    UTF16String const& Path() const { return mPath; }
    UTF16String Path(UTF16String const& inName) const { return mPath + u"\\"_utf16 + inName; }

    /// The system's form of the same.
    std::string const& Native() const { return mNative; }
    std::string Native(std::string const& inName) const { return mNative + '/' + inName; }

private:
    std::string mNative;
    UTF16String mPath;
};

/// A directory on another file system than that of temporary files, if there is one that may be
/// written.
inline std::filesystem::path AnotherFileSystem() {
    auto const usual = std::filesystem::temp_directory_path();
    struct stat usualStatus {};
    ::stat(usual.c_str(), &usualStatus);
    for (auto const* const candidate : {"/dev/shm", "/run/shm", "/var/tmp", "/run", "."}) {
        struct stat status {};
        if (::stat(candidate, &status) == 0 && status.st_dev != usualStatus.st_dev &&
            ::access(candidate, W_OK | X_OK) == 0) {
            return std::filesystem::absolute(candidate);
        }
    }
    return usual;
}

} // namespace brindle::tests
