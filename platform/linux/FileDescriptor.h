#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace brindle::platform {

/// Owns a descriptor of the system, or none (-1). Move-only.
class FileDescriptor {
public:
    FileDescriptor() noexcept = default;
    explicit FileDescriptor(int inDescriptor) noexcept : mDescriptor(inDescriptor) {}
    FileDescriptor(FileDescriptor&& inOther) noexcept : mDescriptor(inOther.Release()) {}
    FileDescriptor& operator=(FileDescriptor&& inOther) noexcept {
        std::swap(mDescriptor, inOther.mDescriptor);
        return *this;
    }
    ~FileDescriptor() {
        if (mDescriptor >= 0) {
            ::close(mDescriptor);
        }
    }

    int Get() const noexcept { return mDescriptor; }
    bool IsOpen() const noexcept { return mDescriptor >= 0; }
    int Release() noexcept { return std::exchange(mDescriptor, -1); }

private:
    int mDescriptor = -1;
};

/// Repeats `inCall` as long as a signal interrupts it.
template <typename Call>
auto Uninterrupted(Call inCall) noexcept {
    auto result = inCall();
    while (result == -1 && errno == EINTR) {
        result = inCall();
    }
    return result;
}

} // namespace brindle::platform
