#include "console/src/listen/ClientSession.h"

#include <utility>

namespace brindle::console {

ClientSession::ClientSession(platform::LocalConnection inConnection,
                             std::string const& inProgramName)
    : mConnection(std::move(inConnection)),
      mOutput(EncodeReply({ReplyKind::kHello, kVersion, inProgramName})) {}

bool ClientSession::WantsInput() const noexcept {
    return !mRequest && !mIsAnswering && !mHasEnded && mOutput.empty();
}

platform::AwaitedDescriptor ClientSession::Awaited() const noexcept {
    platform::AwaitedDescriptor awaited;
    awaited.descriptor = mConnection.Descriptor();
    awaited.awaitsInput = WantsInput();
    awaited.awaitsRoom = !mOutput.empty();
    return awaited;
}

bool ClientSession::Serve(platform::AwaitedDescriptor const& inReady) {
    mHasGone |= inReady.isClosed;
    if (!mHasGone && inReady.hasInput && WantsInput()) {
        mHasGone = !Read();
    }
    Advance();
    bool const isDone = mHasEnded && !mRequest && !mIsAnswering && mOutput.empty();
    return !mHasGone && !isDone;
}

bool ClientSession::Read() {
    constexpr std::size_t kMostAtOnce = 16 * 1024;
    char bytes[kMostAtOnce];
    auto const count = mConnection.Read(bytes, sizeof(bytes));
    mLines.Append(bytes, count.value);
    mHasEnded = count.error == platform::kError_EndOfFile;
    return count || mHasEnded;
}

/// Writes of the output what the system takes now.
bool ClientSession::Write() {
    auto const count = mConnection.Write(mOutput.data() + mWritten, mOutput.size() - mWritten);
    mWritten += count.value;
    if (mWritten == mOutput.size()) {
        mOutput = std::string(); // with its memory
        mWritten = 0;
    }
    return static_cast<bool>(count);
}

/// Takes a line that was read, which is the next request or is refused. False if there is none.
bool ClientSession::FindRequest() {
    std::string line;
    auto const result = mLines.Take(line);
    if (result == LineReader::Result::kTooLong) {
        auto const most = std::to_string(kMostLineBytes);
        mOutput =
            EncodeReply({ReplyKind::kRefused, "the line is longer than " + most + " bytes", {}});
    } else if (result == LineReader::Result::kLine) {
        mRequest = DecodeRequest(line);
        if (!mRequest) {
            mOutput = EncodeReply(
                {ReplyKind::kRefused, "a request begins with 'run', 'complete' or 'help'", {}});
        }
    }
    return result != LineReader::Result::kNone;
}

/// Goes on until there is a request to take, or something to wait for.
void ClientSession::Advance() {
    while (!mHasGone && !mRequest && !mIsAnswering) {
        mHasGone = !mOutput.empty() && !Write();
        if (!mOutput.empty() || !FindRequest()) {
            return;
        }
    }
}

std::optional<Request> ClientSession::TakeRequest() {
    mIsAnswering |= mRequest.has_value();
    return std::exchange(mRequest, std::nullopt);
}

void ClientSession::Answer(Reply const& inReply) {
    mIsAnswering = false;
    mOutput = EncodeReply(inReply);
    Advance();
}

} // namespace brindle::console
