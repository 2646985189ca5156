#pragma once

#include <brindle/Export.h>

#include <cstdint>

namespace brindle::debug {

/// Reports a violated precondition: shows where it stands to the developer, then raises the fatal
/// contract error through `config::ThrowError`. Returns if that returns; the operation then goes on
/// with what it has. Any thread may call.
BRN_API void ViolateContract(char const* inExpression, char const* inFile, std::int32_t inLine);

/// Checks a precondition at the head of an operation. `inExpression` is the condition as text. A
/// constant expression that violates a contract does not compile.
constexpr void CheckContract(bool inHolds, char const* inExpression, char const* inFile,
                             std::int32_t inLine) {
    if (!inHolds) {
        ViolateContract(inExpression, inFile, inLine);
    }
}

/// Shows "[file-line]" to the developer unless that is disabled. Returns false: whoever shows it
/// also breaks into the debugger where that is wanted.
BRN_API bool BreakAfterContractDialog(char const* inExpression, char const* inFile,
                                      std::int32_t inLine);

/// Whether violated contracts are shown, at first they are. The error is raised either way.
BRN_API void DisableContractDialog() noexcept;
BRN_API void EnableContractDialog() noexcept;

/// Executes the processor's breakpoint instruction.
BRN_API void BRN_DebugBreak() noexcept;

/// True for an address that is not null, and for null if that is allowed. The memory is not looked
/// at.
BRN_API bool IsValidAddress(void const* inAddress, bool inNullAllowed) noexcept;
BRN_API bool IsValidAddressRange(void const* inAddress, unsigned int inSize,
                                 bool inNullAllowed) noexcept;

/// True for a range that begins anywhere but at null, and for one that begins at null if that is
/// allowed. Contract: the range is not empty, unless it begins at an allowed null.
BRN_API bool IsValidAddressRange(void const* inBegin, void const* inEnd, bool inNullAllowed);

} // namespace brindle::debug
