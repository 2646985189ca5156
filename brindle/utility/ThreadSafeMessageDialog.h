#pragma once

#include <brindle/Export.h>

namespace brindle::utility {

/// Shows NUL-terminated text to the developer in a dialog with a button "Continue", waits until it
/// is closed, and then calls `debug::BRN_DebugBreak`. Null is an empty text.
///
///     utility::ThreadSafeMessageDialog("the index is damaged");
///
/// Without a display the text is shown on the controlling terminal, if the process runs in its
/// foreground, and otherwise written to the debug channel. If the trace category "Message" lets
/// volume 0 through, the text is traced first. Throws nothing. Any thread may call, also before
/// `main` and after it; two threads may show two dialogs.
BRN_API void ThreadSafeMessageDialog(char const* inMessage) noexcept;

} // namespace brindle::utility
