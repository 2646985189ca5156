#pragma once

#include <string>

namespace brindle::dialog {

/// Puts the text on the clipboard, where it stays as long as this process runs its main loop, or
/// until another program replaces it.
void CopyToClipboard(std::string const& inText);

/// Keeps the text that the user copied from the dialog, by its button or by the keyboard, available
/// after the window has closed. If nothing was copied, or a clipboard manager takes the text over,
/// returns at once. Otherwise calls `inBeforeWaiting`, and if that is true, returns when another
/// program replaces the text.
void KeepClipboard(bool (*inBeforeWaiting)());

} // namespace brindle::dialog
