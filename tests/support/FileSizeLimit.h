#pragma once

#include <csignal>
#include <sys/resource.h>

namespace brindle::tests {

/// While it exists, this process can write no file beyond a size, as if the disk were full.
class FileSizeLimit {
public:
    /// SIGXFSZ is ignored, so that a write fails with an error instead of ending the process.
    explicit FileSizeLimit(rlim_t inBytes) : mOldHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &mOldLimit);
        rlimit const limit{inBytes, mOldLimit.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(FileSizeLimit const&) = delete;
    FileSizeLimit& operator=(FileSizeLimit const&) = delete;
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &mOldLimit);
        std::signal(SIGXFSZ, mOldHandler);
    }

private:
    void (*const mOldHandler)(int);
    rlimit mOldLimit{};
};

} // namespace brindle::tests
