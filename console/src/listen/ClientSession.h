#pragma once

#include "console/src/listen/Protocol.h"
#include "platform/LocalSocket.h"

#include <cstddef>
#include <optional>
#include <string>

namespace brindle::console {

/// A console that is attached to this process. Nothing more is read from it before it has taken the
/// reply to its last request, so that it can make the process keep one line, one request and one
/// reply at most. Used by the service's thread.
class ClientSession {
public:
    /// Begins with a reply of the kind `kHello`.
    ClientSession(platform::LocalConnection inConnection, std::string const& inProgramName);

    platform::AwaitedDescriptor Awaited() const noexcept;
    /// Reads and writes as far as that does not block. False if the client has gone or is done.
    bool Serve(platform::AwaitedDescriptor const& inReady);

    /// The next request, if one has come; it has to be answered.
    std::optional<Request> TakeRequest();
    void Answer(Reply const& inReply);

private:
    bool WantsInput() const noexcept;
    bool Read();
    bool Write();
    bool FindRequest();
    void Advance();

    platform::LocalConnection mConnection;
    LineReader mLines;
    std::optional<Request> mRequest; // that was not taken yet
    bool mIsAnswering = false;       // the request that was taken
    bool mHasEnded = false;          // its input
    bool mHasGone = false;
    std::string mOutput;
    std::size_t mWritten = 0; // of the output
};

} // namespace brindle::console
