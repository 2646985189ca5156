#pragma once

#include <string>

namespace brindle::dialog {

/// Puts the text on the clipboard, where it stays as long as this process runs its main loop, or
/// until another program replaces it.
void CopyToClipboard(std::string const& inText);

/// Keeps what the user copied from the dialog, by its button or by the keyboard, after its window
/// has gone. Where a clipboard manager takes the text over, or nothing was copied, this returns at
/// once. Otherwise calls `inBeforeWaiting` and returns when another program replaces the text.
void KeepClipboard(void (*inBeforeWaiting)());

} // namespace brindle::dialog
