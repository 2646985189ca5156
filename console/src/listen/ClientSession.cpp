#include "console/src/listen/ClientSession.h"

#include <utility>

namespace brindle::console {

ClientSession::ClientSession(platform::LocalConnection inConnection,
                             std::string const& inProgramName)
    : mConnection(std::move(inConnection)),
      mOutput(EncodeReply({ReplyKind::kHello, "console 1", inProgramName})) {}

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
    bool isAlive = !inReady.isClosed;
    if (isAlive && inReady.hasRoom && !mOutput.empty()) {
        isAlive = Write();
    }
    if (isAlive && inReady.hasInput && WantsInput()) {
        isAlive = Read();
    }
    bool const isDone = mHasEnded && !mRequest && !mIsAnswering && mOutput.empty();
    return isAlive && !isDone;
}

bool ClientSession::Read() {
    constexpr std::size_t kMostAtOnce = 16 * 1024;
    char bytes[kMostAtOnce];
    auto const count = mConnection.Read(bytes, sizeof(bytes));
    mLines.Append(bytes, count.value);
    mHasEnded = count.error == platform::kError_EndOfFile;
    FindRequest();
    return count || mHasEnded;
}

bool ClientSession::Write() {
    auto const count = mConnection.Write(mOutput.data() + mWritten, mOutput.size() - mWritten);
    mWritten += count.value;
    if (mWritten == mOutput.size()) {
        mOutput = std::string(); // with its memory
        mWritten = 0;
        FindRequest();
    }
    return static_cast<bool>(count);
}

void ClientSession::FindRequest() {
    std::string line;
    switch (mLines.Take(line)) {
    case LineReader::Result::kNone:
        return;
    case LineReader::Result::kTooLong:
        Answer({ReplyKind::kRefused,
                "the line is longer than " + std::to_string(kMostLineBytes) + " bytes",
                {}});
        return;
    case LineReader::Result::kLine:
        mRequest = DecodeRequest(line);
        if (!mRequest) {
            Answer({ReplyKind::kRefused, "a request begins with 'run' or 'complete'", {}});
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
}

} // namespace brindle::console
