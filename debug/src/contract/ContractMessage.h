#pragma once

namespace brindle::debug {

/// Shows NUL-terminated text about a violated contract to the developer and returns when that is
/// done. Called on the violating thread, on several at once.
using ContractMessageHook = void (*)(char const* inText);

/// Installs what shows the message, for a room above this one; null goes back to the debug channel.
void SetContractMessageHook(ContractMessageHook inHook) noexcept;

} // namespace brindle::debug
