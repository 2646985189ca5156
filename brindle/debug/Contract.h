#pragma once

#include <brindle/Export.h>

#include <cstdint>

namespace brindle::debug {

/// Reports a violated precondition: shows the developer where it stands, then raises
/// `config::kError_ContractViolation`. If that returns, so does this, and the operation goes on
/// with what it has. Any thread may call.
BRN_API void ViolateContract(char const* inExpression, char const* inFile, std::int32_t inLine);

/// Checks a precondition at the head of an operation. `inExpression` is the condition as text:
///
///     debug::CheckContract(inCount > 0, "inCount > 0", __FILE__, __LINE__);
///
/// A violated contract in a constant expression does not compile.
constexpr void CheckContract(bool inHolds, char const* inExpression, char const* inFile,
                             std::int32_t inLine) {
    if (!inHolds) {
        ViolateContract(inExpression, inFile, inLine);
    }
}

/// Shows "[file-line]" to the developer by `utility::ThreadSafeMessageDialog`, unless that is
/// disabled. Returns whether the caller is to
/// break into the debugger, which is always false: the dialog does that by itself.
[[nodiscard]] BRN_API bool BreakAfterContractDialog(char const* inExpression, char const* inFile,
                                                    std::int32_t inLine);

/// Chooses whether violated contracts are shown to the developer; initially they are. The error is
/// raised either way.
BRN_API void DisableContractDialog() noexcept;
BRN_API void EnableContractDialog() noexcept;

/// Stops in the debugger if one is attached to the process. Otherwise writes a line that says so to
/// the debug channel, and the program goes on.
BRN_API void BRN_DebugBreak() noexcept;

/// Returns whether the address is not null, or is allowed to be. The memory is not touched.
[[nodiscard]] BRN_API bool IsValidAddress(void const* inAddress, bool inNullAllowed) noexcept;
/// The same; the size does not matter.
[[nodiscard]] BRN_API bool IsValidAddressRange(void const* inAddress, unsigned int inSize,
                                               bool inNullAllowed) noexcept;

/// Returns whether the range does not begin at null, or is allowed to. Contract: the range is not
/// empty, unless it begins at an allowed null.
[[nodiscard]] BRN_API bool IsValidAddressRange(void const* inBegin, void const* inEnd,
                                               bool inNullAllowed);

} // namespace brindle::debug
