#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>

namespace brindle::host {

/// Writes the line "brindle: TEXT" to standard error. Control characters in it are escaped.
void WriteDiagnostic(std::string const& inText);

/// Standard output cannot be written; `code()` is the system's reason, if it gave one.
class output_error : public std::system_error {
public:
    using std::system_error::system_error;
};

/// Throws `output_error` if what was printed just now, or before, could not be written, so that no
/// verb works for hours on results that get lost.
void RequireOutput();

/// Writes to standard error while a verb runs: one line for each diagnostic and, if standard error
/// is a terminal, a progress line below them.
class Diagnostics {
public:
    Diagnostics();
    ~Diagnostics();
    Diagnostics(Diagnostics const&) = delete;
    Diagnostics& operator=(Diagnostics const&) = delete;

    /// Writes "brindle: PATH: reason" and remembers that something failed.
    void Report(std::string const& inPath, std::string const& inReason);

    /// Remembers that a comparison found a difference, which the verb itself prints as its result.
    void NoteDifference() noexcept { mHasFailures = true; }

    /// Shows the progress line, of ASCII, as far as the terminal is wide, and renews it at most ten
    /// times a second.
    void ShowProgress(std::string const& inText);

    /// Erases the progress line if standard output is a terminal too, so that the next line of
    /// output does not run into it.
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
