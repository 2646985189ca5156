#pragma once

#include <brindle/Export.h>

namespace brindle::utility {

/// Shows NUL-terminated text to the developer in a dialog with a button "Continue", waits until
/// that is closed, and then stops in the debugger if one is attached. Null is an empty text.
///
/// Without a display it asks on the terminal that the process runs in the foreground of; without
/// that as well, it writes the text to the debug channel and goes on. If the trace category
/// "Message" lets volume 0 through, the text is traced first. Throws nothing. Any thread may call,
/// before `main` and after it too; two threads may show two dialogs.
BRN_API void ThreadSafeMessageDialog(char const* inMessage) noexcept;

} // namespace brindle::utility
