#pragma once

#include "platform/Errors.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Streams of bytes between processes of one user on one machine. The sockets stand in a directory
/// of the user's own, which nobody else can enter; each end of a connection checks that the other
/// one is the same user. Nothing blocks, except `Await`.
///
/// The name of a socket is one to `kLongestSocketName` bytes, without NUL and "/", and does not
/// begin with a dot.
namespace brindle::platform {

constexpr std::size_t kLongestSocketName = 80;

/// One end of a connection. Move-only; closes at destruction, which the other end notices at once.
class LocalConnection {
public:
    LocalConnection() noexcept = default;
    explicit LocalConnection(int inDescriptor) noexcept : mDescriptor(inDescriptor) {}
    LocalConnection(LocalConnection&& inOther) noexcept;
    LocalConnection& operator=(LocalConnection&& inOther) noexcept;
    ~LocalConnection();

    int Descriptor() const noexcept { return mDescriptor; }

    /// Reads what is there, at most `inCount` bytes; 0 if nothing is. Errors: 38 the other end
    /// sends nothing more; 31 it has gone.
    Result<std::size_t> Read(char* outBytes, std::size_t inCount) noexcept;
    /// Writes as many bytes as the system takes now; 0 if it takes none. Error: 31 the other end
    /// has gone.
    Result<std::size_t> Write(char const* inBytes, std::size_t inCount) noexcept;

private:
    int mDescriptor = -1;
};

/// A socket to which others connect. Move-only; its name is removed at destruction. A forked child
/// inherits neither listeners nor connections: what it does with its copies has no effect.
class LocalListener {
public:
    LocalListener() noexcept = default;
    LocalListener(LocalListener&& inOther) noexcept;
    LocalListener& operator=(LocalListener&& inOther) noexcept;
    ~LocalListener();

    /// Creates the socket, for this user alone, and removes those whose process has ended. Of
    /// several processes that do so at the same time, none removes what another one creates.
    /// Errors: 3 the user has no directory for it; 5 that is not the user's alone; 32 a process
    /// listens under this name; 4, 112, 123, 206.
    static Result<LocalListener> Open(std::string const& inName);

    int Descriptor() const noexcept { return mDescriptor; }

    /// The next connection of this user that waits; those of others are closed. Errors: 2 none
    /// waits; 4, 8 there are no resources for it, and it goes on waiting.
    Result<LocalConnection> Accept() noexcept;

    /// Removes the name, so that nobody can connect any more. Another thread may be in `Accept`.
    void Remove() noexcept;

private:
    LocalListener(int inDescriptor, std::string inPath) noexcept;

    int mDescriptor = -1;
    std::string mPath; // empty once the socket is removed
    std::uint32_t mForkCount = 0;
};

/// Errors: 2 nobody listens under this name; 3, 5 as for `LocalListener::Open`; 170 too many wait
/// to be connected; 4.
Result<LocalConnection> ConnectLocally(std::string const& inName);

/// The names under which processes listen now, in the order of their bytes. Errors: 3, 5.
Result<std::vector<std::string>> LocalListeners();

/// A descriptor to wait for, and what it is ready for.
struct AwaitedDescriptor {
    int descriptor = -1;
    bool awaitsInput = false;
    bool awaitsRoom = false; ///< for output
    bool hasInput = false;   ///< or its end
    bool hasRoom = false;
    bool isClosed = false; ///< the other end has gone; always awaited
};

/// Blocks until one of the descriptors is ready, the time is over or a signal comes. Negative:
/// without limit. Throws `std::bad_alloc`.
void Await(std::vector<AwaitedDescriptor>& ioDescriptors, int inMilliseconds);

} // namespace brindle::platform
