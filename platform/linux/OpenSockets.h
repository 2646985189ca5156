#pragma once

namespace brindle::platform {

/// A socket that a forked child does not inherit: there the number stands for an empty file, so
/// that the other end notices when the parent closes it, and closing it twice does no harm. -1
/// stays -1. Throws `std::bad_alloc`, after closing it.
int KeepFromForkedChildren(int inSocket);

/// Closes a socket that was kept from forked children; nothing for -1.
void CloseSocket(int inSocket) noexcept;

} // namespace brindle::platform
