#pragma once

#include <string>
#include <vector>

namespace brindle::host {

/// The lines that a user typed earlier, in a file that only the user can read. Several processes
/// may use it at once. A file that cannot be read or written is no failure: the lines are not kept.
class HistoryFile {
public:
    /// `inPath` is empty if nothing is to be kept. Creates the file, and directories on the way.
    explicit HistoryFile(std::string const& inPath);

    /// The lines of earlier runs, the oldest first: the last thousand.
    std::vector<std::string> Read() const;

    /// Appends a line, so that it is there however the process ends.
    void Append(std::string const& inLine) const;

private:
    std::string mPath; // empty if there is no file
};

/// The path of a file of this name among what programs remember for their user:
/// $XDG_STATE_HOME/brindle, or ~/.local/state/brindle. Empty if the environment names no home.
std::string HistoryPath(std::string const& inName);

} // namespace brindle::host
