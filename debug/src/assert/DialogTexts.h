#pragma once

#include "debug/src/question/DialogQuestion.h"

namespace brindle::debug {

// The ids of the buttons.
inline constexpr int kButton_Debug = 14200; ///< also "Continue" of the contract dialog
inline constexpr int kButton_IgnoreOnce = 14201;
inline constexpr int kButton_IgnoreAlways = 14202;
inline constexpr int kButton_DisableAsserts = 14203;
inline constexpr int kButton_KillProcess = 14204;
inline constexpr int kButton_Copy = 14205;

/// The dialogs, with the client's name and the labels in the host's language. They throw what the
/// host's localiser does, and `std::bad_alloc`.
DialogQuestion AssertQuestion(char const* inHeading, char const* inBody);
DialogQuestion ContractQuestion(char const* inMessage);

} // namespace brindle::debug
