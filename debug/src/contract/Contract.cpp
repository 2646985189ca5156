#include <brindle/debug/Contract.h>

#include "debug/src/contract/ContractMessage.h"

#include "platform/DebugOutput.h"
#include "platform/Process.h"

#include <brindle/config/ErrorCodes.h>
#include <brindle/utility/ThreadSafeMessageDialog.h>

#include <atomic>
#include <functional>
#include <string>

namespace brindle::debug {

namespace {

std::atomic<bool> S_dialogEnabled{true};
std::atomic<ContractMessageHook> S_messageHookP{nullptr};

} // namespace

void SetContractMessageHook(ContractMessageHook inHook) noexcept {
    S_messageHookP.store(inHook, std::memory_order_release);
}

void ViolateContract(char const* inExpression, char const* inFile, std::int32_t inLine) {
    if (BreakAfterContractDialog(inExpression, inFile, inLine)) {
        BRN_DebugBreak();
    }
    config::ThrowError(config::kError_ContractViolation);
}

bool BreakAfterContractDialog(char const*, char const* inFile, std::int32_t inLine) {
    if (S_dialogEnabled.load(std::memory_order_relaxed)) {
        std::string const text = "[" + std::string(inFile) + "-" + std::to_string(inLine) + "]\r\n";
        ContractMessageHook const hook = S_messageHookP.load(std::memory_order_acquire);
        (hook != nullptr ? hook : utility::ThreadSafeMessageDialog)(text.c_str());
    }
    return false;
}

void DisableContractDialog() noexcept {
    S_dialogEnabled.store(false, std::memory_order_relaxed);
}

void EnableContractDialog() noexcept {
    S_dialogEnabled.store(true, std::memory_order_relaxed);
}

void BRN_DebugBreak() noexcept {
    if (!platform::BreakIntoDebugger()) {
        platform::WriteDebugOutput(
            "brindle: a breakpoint was reached, but no debugger is attached\n");
    }
}

bool IsValidAddress(void const* inAddress, bool inNullAllowed) noexcept {
    return inAddress != nullptr || inNullAllowed;
}

bool IsValidAddressRange(void const* inAddress, unsigned int, bool inNullAllowed) noexcept {
    return IsValidAddress(inAddress, inNullAllowed);
}

bool IsValidAddressRange(void const* inBegin, void const* inEnd, bool inNullAllowed) {
    if (inNullAllowed && inBegin == nullptr) {
        return true;
    }
    // Pointers that do not point into one array are ordered by std::less alone.
    CheckContract(std::less<void const*>()(inBegin, inEnd), "inBegin < inEnd", "debug/src/Debug",
                  76);
    return inBegin != nullptr;
}

} // namespace brindle::debug
