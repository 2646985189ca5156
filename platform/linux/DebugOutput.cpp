#include "platform/DebugOutput.h"

#include "platform/linux/FileDescriptor.h"
#include "utility/src/base/Mutex.h"

#include <csignal>
#include <cstring>
#include <ctime>

namespace brindle::platform {

namespace {

utility::Mutex S_outputMutex;

/// Keeps a write into a pipe that nobody reads from ending the process.
class BrokenPipeGuard {
public:
    BrokenPipeGuard() noexcept {
        ::sigemptyset(&mBrokenPipe);
        ::sigaddset(&mBrokenPipe, SIGPIPE);
        sigset_t pending;
        mWasPending = ::sigpending(&pending) == 0 && ::sigismember(&pending, SIGPIPE) == 1;
        ::pthread_sigmask(SIG_BLOCK, &mBrokenPipe, &mOldMask);
    }
    BrokenPipeGuard(BrokenPipeGuard const&) = delete;
    BrokenPipeGuard& operator=(BrokenPipeGuard const&) = delete;
    ~BrokenPipeGuard() {
        timespec const atOnce{};
        if (!mWasPending) {
            Uninterrupted([&] { return ::sigtimedwait(&mBrokenPipe, nullptr, &atOnce); });
        }
        ::pthread_sigmask(SIG_SETMASK, &mOldMask, nullptr);
    }

private:
    sigset_t mBrokenPipe;
    sigset_t mOldMask;
    bool mWasPending = false;
};

} // namespace

void WriteDebugOutput(char const* inText) noexcept {
    utility::MutexLock const lock(S_outputMutex);
    BrokenPipeGuard const guard;
    auto left = std::strlen(inText);
    while (left > 0) {
        auto const count = Uninterrupted([&] { return ::write(STDERR_FILENO, inText, left); });
        if (count <= 0) {
            return;
        }
        inText += count;
        left -= static_cast<std::size_t>(count);
    }
}

} // namespace brindle::platform
