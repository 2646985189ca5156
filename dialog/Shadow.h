#pragma once

namespace brindle::dialog {

/// Continues in a child process, which shows the dialog. This process, which the library waits for,
/// ends when the child does, or when the child calls `LeaveShadow`. Before the toolkit starts.
void ContinueInShadow();

/// Lets the process that the library waits for end while this one lives on, apart from the
/// program's terminal and files. Does nothing if there is no such process.
void LeaveShadow();

} // namespace brindle::dialog
