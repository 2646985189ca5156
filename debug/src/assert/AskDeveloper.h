#pragma once

#include "debug/src/question/DialogQuestion.h"

#include <functional>

namespace brindle::debug {

/// What became of a question.
enum class Showing {
    kAnswered,
    kNobodyThere, ///< there is neither a display nor a terminal
    kNotStarted,  ///< there was no process for the dialog
    kFailed       ///< the dialog ended without an answer
};

struct DeveloperAnswer {
    Showing showing = Showing::kFailed;
    int button = 0; ///< the id, if answered; 0 for an answer that the question does not offer
};

/// Makes the question and shows it in a dialog, or on the controlling terminal where there is no
/// display or no program that shows dialogs, and waits for the answer. Any thread may call; dialogs
/// may be shown side by side, and questions at the terminal wait for each other.
///
/// Making the question calls the host's localiser. If a check fails in there, the nested call
/// returns `kNobodyThere` at once. Throws what the function throws, and `std::bad_alloc`.
DeveloperAnswer AskDeveloper(std::function<DialogQuestion()> const& inMakeQuestion);

} // namespace brindle::debug
