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

/// What a line for `ExecuteCommand` may have at the cursor, which is an index of a byte: the name
/// of a command; and behind the names of built-in commands a debug key, a trace category, in
/// quotation marks if it needs them, or an absolute path, of which a directory ends in a separator.
/// What follows the cursor does not matter. For a window or an editor in which a developer types:
///
///     auto const found = console::CompleteLine("trace.set deco"_utf8, 14);
///     // found.start is 10, and found.candidates may hold "decoder"
///
/// Changes nothing, and never fails: what cannot be read has no candidates. Any thread may call.
[[nodiscard]] BRN_API Completions CompleteLine(UTF8String const& inLine, std::size_t inCursor);

} // namespace brindle::console
