#pragma once

#include <csignal>
#include <sys/resource.h>

namespace brindle::tests {

/// While it exists, the kernel grants this process no more of a resource.
class ResourceLimit {
public:
    ResourceLimit(decltype(RLIMIT_FSIZE) inResource, rlim_t inAmount) : mResource(inResource) {
        ::getrlimit(mResource, &mFormer);
        rlimit const limit{inAmount, mFormer.rlim_max};
        ::setrlimit(mResource, &limit);
    }
    ResourceLimit(ResourceLimit const&) = delete;
    ResourceLimit& operator=(ResourceLimit const&) = delete;
    ~ResourceLimit() { ::setrlimit(mResource, &mFormer); }

private:
    decltype(RLIMIT_FSIZE) const mResource;
    rlimit mFormer{};
};

/// While it exists, this process can write no file beyond a size, as if the disk were full.
class FileSizeLimit : ResourceLimit {
public:
    /// SIGXFSZ is ignored, so that a write fails with an error instead of ending the process.
    explicit FileSizeLimit(rlim_t inBytes) : ResourceLimit(RLIMIT_FSIZE, inBytes) {}
    ~FileSizeLimit() { std::signal(SIGXFSZ, mOldHandler); }

private:
    void (*const mOldHandler)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

} // namespace brindle::tests
