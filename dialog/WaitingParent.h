#pragma once

namespace brindle::dialog {

/// Continues in a child process, which shows the dialog. The parent, which the library waits for,
/// ends when the child ends or calls `ReleaseParent`. To be called before the toolkit starts. If
/// there is no child process, the parent continues itself.
void ContinueInChild();

/// Lets the parent end while this process goes on without a controlling terminal and with no open
/// standard stream. Returns false, without any effect, if there is no such parent.
bool ReleaseParent();

} // namespace brindle::dialog
