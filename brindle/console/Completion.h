#pragma once

#include <brindle/Export.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <vector>

namespace brindle::console {

/// How the word that ends at the cursor may go on.
struct Completions {
    std::size_t start = 0;              ///< the index of the word's first byte in the line
    std::vector<UTF8String> candidates; ///< whole words for its place, sorted
};

/// Completes the word in front of the cursor of a line for `ExecuteCommand`; the cursor is the
/// index of a byte, and what follows it does not matter. The first word is the name of a command.
/// Behind the name of a built-in command follow debug keys, trace categories (in quotation marks if
/// they need them) or absolute paths, of which those of directories end in a separator. For a
/// window or an editor in which a developer types:
///
///     auto const found = console::CompleteLine("trace.set deco"_utf8, 14);
///     // found.start is 10, and found.candidates may hold "decoder"
///
/// Changes nothing, and never fails: where the databases cannot be read there are no candidates.
/// Any thread may call.
[[nodiscard]] BRN_API Completions CompleteLine(UTF8String const& inLine, std::size_t inCursor);

} // namespace brindle::console
