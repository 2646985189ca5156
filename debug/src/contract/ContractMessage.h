#pragma once

namespace brindle::debug {

/// Shows NUL-terminated text about a violated contract to the developer, and returns when that is
/// done. It runs on the thread that violated the contract, and several threads may do so at once.
using ContractMessageHook = void (*)(char const* inText);

/// Installs what shows the message instead of `utility::ThreadSafeMessageDialog`, which is the
/// default and which null stands for.
void SetContractMessageHook(ContractMessageHook inHook) noexcept;

} // namespace brindle::debug
