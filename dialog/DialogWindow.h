#pragma once

#include "debug/src/question/DialogQuestion.h"

namespace brindle::dialog {

/// Shows the question in a modal dialog and returns the id of the button that closed it. Copying
/// leaves it open. Returns the id of the closing button if `EndDialog` is called.
int RunDialog(debug::DialogQuestion const& inQuestion);

/// Closes the dialog that is open.
void EndDialog();

} // namespace brindle::dialog
