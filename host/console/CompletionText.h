#pragma once

#include "host/commandline/PlainText.h"
#include "host/lineedit/LineEditor.h"

#include <brindle/console/Completion.h>

namespace brindle::host {

/// The library's completions in the form of the line editor.
inline LineCompletions CompletionText(console::Completions const& inFound) {
    LineCompletions completions;
    completions.start = inFound.start;
    for (auto const& candidate : inFound.candidates) {
        completions.candidates.push_back(PlainText(candidate));
    }
    return completions;
}

} // namespace brindle::host
