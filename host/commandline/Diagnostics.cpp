#include "host/commandline/Diagnostics.h"

#include "host/commandline/EscapedText.h"

#include <brindle/console/Terminal.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

namespace brindle::host {

namespace {

constexpr std::chrono::milliseconds kShowInterval(100);
constexpr char kEraseLine[] = "\r\x1B[K";

} // namespace

void WriteDiagnostic(std::string const& inText) {
    utility::streams::Err << "brindle: " << EscapedText(inText, "") << '\n';
}

void RequireOutput() {
    if (!utility::streams::Out) {
        throw output_error(errno, std::generic_category());
    }
}

Diagnostics::Diagnostics()
    : mIsTerminal(console::ErrorOutputIsTerminal()),
      mOutputIsTerminal(console::OutputIsTerminal()) {}

Diagnostics::~Diagnostics() {
    ClearProgress();
}

void Diagnostics::Report(std::string const& inPath, std::string const& inReason) {
    mHasFailures = true;
    ClearProgress();
    WriteDiagnostic(EscapedText(inPath) + ": " + inReason);
}

void Diagnostics::ShowProgress(std::string const& inText) {
    if (!mIsTerminal) {
        return;
    }
    auto const now = Clock::now();
    if (now >= mNextShow) {
        // A line that wraps could not be erased; the cursor needs the last column.
        std::uint32_t const width = std::max(console::ErrorOutputWidth(), 1u) - 1;
        utility::streams::Err << kEraseLine << inText.substr(0, width) << std::flush;
        mIsShowing = true;
        mNextShow = now + kShowInterval;
    }
}

void Diagnostics::MakeRoomForOutput() {
    if (mOutputIsTerminal) {
        ClearProgress();
    }
}

void Diagnostics::ClearProgress() {
    if (mIsShowing) {
        utility::streams::Err << kEraseLine << std::flush;
        mIsShowing = false;
    }
}

} // namespace brindle::host
