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
    /// In memory where the system has such a directory.
    static TemporaryDirectory InMemory() {
        std::filesystem::path const memory("/dev/shm");
        bool const isUsable = ::eaccess(memory.c_str(), W_OK) == 0;
        return TemporaryDirectory(isUsable ? memory : std::filesystem::temp_directory_path());
    }
    /// On another file system than `TemporaryDirectory()` if there is one that this user may write
    /// to.
    static TemporaryDirectory OnAnotherFileSystem() {
        namespace fs = std::filesystem;
        struct stat usual {};
        ::stat(fs::temp_directory_path().c_str(), &usual);
        fs::path const userDirectory("/run/user/" + std::to_string(::geteuid()));
        for (fs::path const& place :
             {fs::path("/dev/shm"), userDirectory, fs::path("/var/tmp"), fs::current_path()}) {
            struct stat other {};
            if (::stat(place.c_str(), &other) == 0 && other.st_dev != usual.st_dev &&
                ::eaccess(place.c_str(), W_OK) == 0) {
                return TemporaryDirectory(place);
            }
        }
        return TemporaryDirectory();
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

} // namespace brindle::tests
