#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brindle::host {

/// What the word that ends at the cursor may be completed to.
struct LineCompletions {
    std::size_t start = 0;               ///< where the word begins, in bytes
    std::vector<std::string> candidates; ///< whole words for its place
};

/// Lines that a person types at the terminal of standard input and output, with editing, history
/// and completion by the tabulator:
///
///     LineEditor editor("brindle> ", complete, HistoryPath("console_history"));
///     for (std::string line; editor.ReadLine(line);) { ... }
///
/// Text is UTF-8. A process has one at a time, which one thread uses.
class LineEditor {
public:
    /// Is called on the thread that reads, with the line and the index of the cursor in it.
    using Completer = std::function<LineCompletions(std::string const&, std::size_t)>;

    /// `inPrompt` is of ASCII. The history is kept in the file, unless its path is empty.
    LineEditor(std::string const& inPrompt, Completer const& inCompleter,
               std::string const& inHistoryPath);
    ~LineEditor();
    LineEditor(LineEditor const&) = delete;
    LineEditor& operator=(LineEditor const&) = delete;

    /// Waits until a line is typed, and returns it without its line end. Ctrl-C drops what was
    /// typed and starts again. False if the input has ended.
    bool ReadLine(std::string& outLine);

private:
    struct Editing; // the library that edits
    std::unique_ptr<Editing> mEditing;
};

} // namespace brindle::host
