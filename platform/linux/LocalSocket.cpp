#include "platform/LocalSocket.h"

#include "platform/Fork.h"
#include "platform/linux/ErrnoTable.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/OpenSockets.h"

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace brindle::platform {

namespace {

constexpr char const* kDirectory = "brindle";
constexpr mode_t kMode_Directory = 0700;
constexpr mode_t kMode_Socket = 0600;
constexpr mode_t kMode_Others = 0077;

/// The user's directory of sockets.
struct Directory {
    FileDescriptor descriptor;
    std::string path;
};

bool IsOwn(struct stat const& inStatus) noexcept {
    return inStatus.st_uid == ::geteuid();
}

/// The directory in which the desktop lets programs of this user meet. There is no other place in
/// its stead: where others can create names, one cannot know who listens behind them.
Result<Directory> RuntimeDirectory() {
    char const* const path = std::getenv("XDG_RUNTIME_DIR");
    if (path == nullptr || path[0] != '/') {
        return {{}, kError_PathNotFound};
    }
    FileDescriptor directory(::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory.IsOpen()) {
        auto const error = ErrorFromErrno(errno);
        return {{}, error == kError_FileNotFound ? kError_PathNotFound : error};
    }
    struct stat status {};
    if (::fstat(directory.Get(), &status) != 0 || !IsOwn(status) ||
        (status.st_mode & kMode_Others) != 0) {
        return {{}, kError_AccessDenied};
    }
    return {{std::move(directory), path}, kError_None};
}

enum class IfMissing { kCreate, kFail };

Result<Directory> SocketDirectory(IfMissing inIfMissing) {
    auto const runtime = RuntimeDirectory();
    if (!runtime) {
        return {{}, runtime.error};
    }
    int const place = runtime.value.descriptor.Get();
    if (inIfMissing == IfMissing::kCreate) {
        ::mkdirat(place, kDirectory, kMode_Directory);
    }
    FileDescriptor directory(
        ::openat(place, kDirectory, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!directory.IsOpen() && errno == ENOENT) {
        return {{}, kError_PathNotFound};
    }
    struct stat status {};
    // Whatever the umask is, or somebody has made of the mode.
    if (!directory.IsOpen() || ::fstat(directory.Get(), &status) != 0 || !IsOwn(status) ||
        ::fchmod(directory.Get(), kMode_Directory) != 0) {
        return {{}, kError_AccessDenied};
    }
    return {{std::move(directory), runtime.value.path + '/' + kDirectory}, kError_None};
}

/// Held while sockets are created and removed, so that a socket that refuses is one whose process
/// has ended.
class DirectoryLock {
public:
    explicit DirectoryLock(Directory const& inDirectory) noexcept
        : mDescriptor(inDirectory.descriptor.Get()) {
        // A file system without locks counts as granting them.
        Uninterrupted([&] { return ::flock(mDescriptor, LOCK_EX); });
    }
    DirectoryLock(DirectoryLock const&) = delete;
    DirectoryLock& operator=(DirectoryLock const&) = delete;
    // Closing would not be enough, for a child that was forked meanwhile has the descriptor too.
    ~DirectoryLock() { ::flock(mDescriptor, LOCK_UN); }

private:
    int const mDescriptor;
};

/// The address of a name in the directory; through the descriptor if the path is too long for it.
Result<sockaddr_un> AddressOf(Directory const& inDirectory, std::string const& inName) {
    bool const isName =
        !inName.empty() && inName[0] != '.' && inName.find('/') == std::string::npos;
    if (!isName || inName.find('\0') != std::string::npos) {
        return {{}, kError_InvalidName};
    }
    if (inName.size() > kLongestSocketName) {
        return {{}, kError_NameTooLong};
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::string path = inDirectory.path + '/' + inName;
    if (path.size() >= sizeof(address.sun_path)) {
        path = "/proc/self/fd/" + std::to_string(inDirectory.descriptor.Get()) + '/' + inName;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return {address, kError_None};
}

FileDescriptor NewSocket() noexcept {
    return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

template <typename Call>
int WithAddress(Call inCall, FileDescriptor const& inSocket,
                sockaddr_un const& inAddress) noexcept {
    return Uninterrupted([&] {
        return inCall(inSocket.Get(), reinterpret_cast<sockaddr const*>(&inAddress),
                      sizeof(inAddress));
    });
}

Result<FileDescriptor> Connect(Directory const& inDirectory, std::string const& inName) {
    auto const address = AddressOf(inDirectory, inName);
    if (!address) {
        return {{}, address.error};
    }
    auto socket = NewSocket();
    if (!socket.IsOpen()) {
        return {{}, ErrorFromErrno(errno)};
    }
    if (WithAddress(::connect, socket, address.value) == 0) {
        return {std::move(socket), kError_None};
    }
    switch (errno) {
    case ECONNREFUSED:
        return {{}, kError_FileNotFound};
    case EAGAIN:
        return {{}, kError_Busy};
    default:
        return {{}, ErrorFromErrno(errno)};
    }
}

std::vector<std::string> NamesIn(Directory const& inDirectory) {
    std::vector<std::string> names;
    int const copy =
        ::openat(inDirectory.descriptor.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    std::unique_ptr<DIR, int (*)(DIR*)> const scan(copy >= 0 ? ::fdopendir(copy) : nullptr,
                                                   ::closedir);
    while (dirent const* const entry = scan != nullptr ? ::readdir(scan.get()) : nullptr) {
        struct stat status {};
        if (entry->d_name[0] != '.' &&
            ::fstatat(copy, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISSOCK(status.st_mode)) {
            names.emplace_back(entry->d_name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Whether a socket is left of a process that has ended. If in doubt, somebody listens.
bool IsStale(Directory const& inDirectory, std::string const& inName) {
    return Connect(inDirectory, inName).error == kError_FileNotFound;
}

void RemoveStale(Directory const& inDirectory) {
    for (auto const& name : NamesIn(inDirectory)) {
        if (IsStale(inDirectory, name)) {
            ::unlinkat(inDirectory.descriptor.Get(), name.c_str(), 0);
        }
    }
}

bool IsSameUser(int inSocket) noexcept {
    ucred other{};
    socklen_t size = sizeof(other);
    return ::getsockopt(inSocket, SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 &&
           other.uid == ::geteuid();
}

Result<std::size_t> Transferred(ssize_t inCount) noexcept {
    if (inCount >= 0) {
        return {static_cast<std::size_t>(inCount), kError_None};
    }
    return {0, errno == EAGAIN ? kError_None : kError_GeneralFailure};
}

} // namespace

LocalConnection::LocalConnection(LocalConnection&& inOther) noexcept
    : mDescriptor(std::exchange(inOther.mDescriptor, -1)) {}

LocalConnection& LocalConnection::operator=(LocalConnection&& inOther) noexcept {
    std::swap(mDescriptor, inOther.mDescriptor);
    return *this;
}

LocalConnection::~LocalConnection() {
    CloseSocket(mDescriptor);
}

Result<std::size_t> LocalConnection::Read(char* outBytes, std::size_t inCount) noexcept {
    auto const count = Uninterrupted([&] { return ::recv(mDescriptor, outBytes, inCount, 0); });
    return count == 0 ? Result<std::size_t>{0, kError_EndOfFile} : Transferred(count);
}

Result<std::size_t> LocalConnection::Write(char const* inBytes, std::size_t inCount) noexcept {
    return Transferred(
        Uninterrupted([&] { return ::send(mDescriptor, inBytes, inCount, MSG_NOSIGNAL); }));
}

LocalListener::LocalListener(int inDescriptor, std::string inPath) noexcept
    : mDescriptor(inDescriptor), mPath(std::move(inPath)), mForkCount(ForkCount()) {}

LocalListener::LocalListener(LocalListener&& inOther) noexcept {
    *this = std::move(inOther);
}

LocalListener& LocalListener::operator=(LocalListener&& inOther) noexcept {
    std::swap(mDescriptor, inOther.mDescriptor);
    std::swap(mPath, inOther.mPath);
    std::swap(mForkCount, inOther.mForkCount);
    return *this;
}

LocalListener::~LocalListener() {
    Remove();
    CloseSocket(mDescriptor);
}

Result<LocalListener> LocalListener::Open(std::string const& inName) {
    auto const directory = SocketDirectory(IfMissing::kCreate);
    if (!directory) {
        return {{}, directory.error};
    }
    auto const address = AddressOf(directory.value, inName);
    if (!address) {
        return {{}, address.error};
    }
    auto socket = NewSocket();
    if (!socket.IsOpen()) {
        return {{}, ErrorFromErrno(errno)};
    }
    DirectoryLock const lock(directory.value);
    RemoveStale(directory.value);
    if (WithAddress(::bind, socket, address.value) != 0) {
        return {{}, errno == EADDRINUSE ? kError_SharingViolation : ErrorFromErrno(errno)};
    }
    LocalListener listener(KeepFromForkedChildren(socket.Release()),
                           directory.value.path + '/' + inName);
    // Nobody can connect before this is done, whatever the umask has left of the mode.
    if (::fchmodat(directory.value.descriptor.Get(), inName.c_str(), kMode_Socket, 0) != 0 ||
        ::listen(listener.mDescriptor, SOMAXCONN) != 0) {
        return {{}, ErrorFromErrno(errno)};
    }
    return {std::move(listener), kError_None};
}

Result<LocalConnection> LocalListener::Accept() noexcept try {
    for (;;) {
        FileDescriptor socket(Uninterrupted([&] {
            return ::accept4(mDescriptor, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        }));
        if (socket.IsOpen() && IsSameUser(socket.Get())) {
            return {LocalConnection(KeepFromForkedChildren(socket.Release())), kError_None};
        }
        if (!socket.IsOpen() && errno != ECONNABORTED) {
            return {{}, errno == EAGAIN ? kError_FileNotFound : ErrorFromErrno(errno)};
        }
    }
} catch (std::bad_alloc const&) {
    return {{}, kError_NotEnoughMemory};
}

void LocalListener::Remove() noexcept {
    if (!mPath.empty() && mForkCount == ForkCount()) {
        // While it listens nobody else removes it, so the name is still that of this socket.
        ::unlink(mPath.c_str());
        ::shutdown(mDescriptor, SHUT_RDWR);
    }
    mPath.clear();
}

Result<LocalConnection> ConnectLocally(std::string const& inName) {
    auto const directory = SocketDirectory(IfMissing::kFail);
    if (!directory) {
        return {{}, directory.error};
    }
    auto socket = Connect(directory.value, inName);
    if (!socket) {
        return {{}, socket.error};
    }
    return {LocalConnection(KeepFromForkedChildren(socket.value.Release())), kError_None};
}

Result<std::vector<std::string>> LocalListeners() {
    auto const directory = SocketDirectory(IfMissing::kFail);
    if (!directory) {
        return {{}, directory.error};
    }
    auto names = NamesIn(directory.value);
    auto const isStale = [&](std::string const& inName) {
        return IsStale(directory.value, inName);
    };
    names.erase(std::remove_if(names.begin(), names.end(), isStale), names.end());
    return {std::move(names), kError_None};
}

void Await(std::vector<AwaitedDescriptor>& ioDescriptors, int inMilliseconds) {
    std::vector<pollfd> watched;
    for (auto const& awaited : ioDescriptors) {
        int const events = (awaited.awaitsInput ? POLLIN : 0) | (awaited.awaitsRoom ? POLLOUT : 0);
        watched.push_back({awaited.descriptor, static_cast<short>(events), 0});
    }
    if (::poll(watched.data(), watched.size(), inMilliseconds) < 0) {
        return; // a signal: the caller looks again
    }
    for (std::size_t i = 0; i < watched.size(); ++i) {
        int const ready = watched[i].revents;
        ioDescriptors[i].hasInput = (ready & (POLLIN | POLLHUP | POLLERR)) != 0;
        ioDescriptors[i].hasRoom = (ready & POLLOUT) != 0;
        ioDescriptors[i].isClosed = (ready & (POLLHUP | POLLERR | POLLNVAL)) != 0;
    }
}

} // namespace brindle::platform
