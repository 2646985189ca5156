#include "host/commandline/Diagnostics.h"

#include "host/commandline/EscapedText.h"

#include <brindle/console/Terminal.h>
#include <brindle/utility/Streams.h>

namespace brindle::host {

namespace {

constexpr std::chrono::milliseconds kShowInterval(100);
constexpr char kEraseLine[] = "\r\x1B[K";

} // namespace

Diagnostics::Diagnostics()
    : mIsTerminal(console::ErrorOutputIsTerminal()),
      mOutputIsTerminal(console::OutputIsTerminal()) {}

Diagnostics::~Diagnostics() {
    ClearProgress();
}

void Diagnostics::Report(std::string const& inPath, std::string const& inReason) {
    mHasFailures = true;
    ClearProgress();
    utility::streams::Err << "brindle: " << EscapedName(inPath) << ": " << inReason << '\n';
}

void Diagnostics::ShowProgress(std::string const& inText) {
    if (!mIsTerminal) {
        return;
    }
    auto const now = Clock::now();
    if (now >= mNextShow) {
        utility::streams::Err << kEraseLine << inText << std::flush;
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
