#include "platform/ChildProcess.h"

#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FileDescriptor.h"

#include <fcntl.h>
#include <features.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <array>
#include <csignal>

namespace brindle::platform {

namespace {

constexpr std::size_t kMostBytes = 256;

/// What the child does before it executes the program. The calls cannot fail but for lack of
/// memory, which shows in the first `posix_spawn` that uses the object.
class SpawnSettings {
public:
    explicit SpawnSettings(int inChannel) noexcept {
        ::posix_spawn_file_actions_init(&mActions);
        // If the channel already has that number, this lets the program inherit it.
        ::posix_spawn_file_actions_adddup2(&mActions, inChannel, STDIN_FILENO);
        ::posix_spawn_file_actions_addopen(&mActions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
#if __GLIBC_PREREQ(2, 34)
        // Not every descriptor of the host is closed by itself when a program is executed.
        ::posix_spawn_file_actions_addclosefrom_np(&mActions, STDERR_FILENO + 1);
#endif
        sigset_t signals;
        ::posix_spawnattr_init(&mAttributes);
        ::posix_spawnattr_setflags(&mAttributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&mAttributes, &signals);
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&mAttributes, &signals);
    }
    SpawnSettings(SpawnSettings const&) = delete;
    SpawnSettings& operator=(SpawnSettings const&) = delete;
    ~SpawnSettings() {
        ::posix_spawnattr_destroy(&mAttributes);
        ::posix_spawn_file_actions_destroy(&mActions);
    }

    /// Returns 0 or an `errno`.
    int Spawn(std::string const& inPath, pid_t& outProcess) const noexcept {
        std::string name = inPath;
        char* const arguments[] = {name.data(), nullptr};
        return ::posix_spawn(&outProcess, inPath.c_str(), &mActions, &mAttributes, arguments,
                             environ);
    }

private:
    posix_spawn_file_actions_t mActions;
    posix_spawnattr_t mAttributes;
};

/// Stops without a failure where the program does not read any more.
void Send(int inChannel, std::string_view inRequest) noexcept {
    while (!inRequest.empty()) {
        auto const count = Uninterrupted(
            [&] { return ::send(inChannel, inRequest.data(), inRequest.size(), MSG_NOSIGNAL); });
        if (count <= 0) {
            break;
        }
        inRequest.remove_prefix(static_cast<std::size_t>(count));
    }
    ::shutdown(inChannel, SHUT_WR);
}

/// Returns how many bytes were received before a line feed or the end.
std::size_t ReceiveLine(int inChannel, std::array<char, kMostBytes>& outAnswer) noexcept {
    for (std::size_t size = 0; size < outAnswer.size(); ++size) {
        auto const count =
            Uninterrupted([&] { return ::read(inChannel, outAnswer.data() + size, 1); });
        if (count <= 0 || outAnswer[size] == '\n') {
            return size;
        }
    }
    return outAnswer.size();
}

/// Waits until the child has ended and forgets it. If SIGCHLD is ignored or another thread waits
/// for all children, somebody else does that; then the call fails, which is as well.
void Reap(pid_t inProcess) noexcept {
    Uninterrupted([&] { return ::waitpid(inProcess, nullptr, 0); });
}

} // namespace

Result<std::string> AskProgram(std::string const& inNativePath, std::string_view inRequest) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return {{}, ErrorFromErrno(errno)};
    }
    FileDescriptor const ours(ends[0]);
    FileDescriptor theirs(ends[1]);
    pid_t child = -1;
    if (int const error = SpawnSettings(theirs.Get()).Spawn(inNativePath, child); error != 0) {
        return {{}, ErrorFromErrno(error)};
    }
    theirs = FileDescriptor();
    Send(ours.Get(), inRequest);
    std::array<char, kMostBytes> answer;
    auto const size = ReceiveLine(ours.Get(), answer);
    Reap(child);
    return {std::string(answer.data(), size), kError_None};
}

} // namespace brindle::platform
