#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace brindle::host {

/// A name as one line of text: a backslash, a newline and a carriage return become "\\", "\n" and
/// "\r".
std::string EscapedName(std::string const& inName);

/// What a person sees on standard error while a verb runs: diagnostics, one a line, and below them
/// a progress line if standard error is a terminal.
class Diagnostics {
public:
    Diagnostics();
    ~Diagnostics();
    Diagnostics(Diagnostics const&) = delete;
    Diagnostics& operator=(Diagnostics const&) = delete;

    /// Writes "brindle: PATH: reason" and remembers that something failed.
    void Report(std::string const& inPath, std::string const& inReason);

    /// Remembers that what was compared differs, which a verb tells as its result.
    void NoteDifference() noexcept { mHasFailures = true; }

    /// Shows how far the work is, at most some times a second.
    void ShowProgress(std::string const& inText);

    /// Takes the progress line away if the line of output that follows would run into it.
    void MakeRoomForOutput();

    bool HasFailures() const noexcept { return mHasFailures; }

private:
    using Clock = std::chrono::steady_clock;

    void ClearProgress();

    bool const mIsTerminal;
    bool const mOutputIsTerminal;
    bool mIsShowing = false;
    bool mHasFailures = false;
    Clock::time_point mNextShow;
};

} // namespace brindle::host
