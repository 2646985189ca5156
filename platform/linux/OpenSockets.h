#pragma once

namespace brindle::platform {

/// Takes care that forked children do not inherit this socket, so that the other end notices when
/// this process closes it. In a child its number stands for the null device for good, so that
/// objects that were copied with the process reach no other file. -1 stays -1. Throws
/// `std::bad_alloc`, after closing the socket.
int KeepFromForkedChildren(int inSocket);

/// Closes a socket that was kept from forked children. Does nothing for -1, and in such a child.
void CloseSocket(int inSocket) noexcept;

} // namespace brindle::platform
