#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

/// A fresh directory on the disk where the program was started, for others may be in memory. It is
/// removed at the end.
class WorkingDirectory {
public:
    WorkingDirectory() {
        if (::mkdtemp(mPath.data()) == nullptr) {
            std::abort();
        }
    }
    WorkingDirectory(WorkingDirectory const&) = delete;
    WorkingDirectory& operator=(WorkingDirectory const&) = delete;
    ~WorkingDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

    std::string const& Path() const { return mPath; }

private:
    std::string mPath = std::filesystem::current_path() / "brindle-bench-XXXXXX";
};
