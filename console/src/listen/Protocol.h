#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// What a program that listens and a console that is attached to it say to each other, as described
/// in docs/console-protocol.md.
namespace brindle::console {

constexpr std::size_t kMostLineBytes = 64 * 1024;
constexpr std::size_t kMostOutputUnits = 512 * 1024; ///< of UTF-16
constexpr std::size_t kMostBodyBytes = 3 * kMostOutputUnits;
constexpr std::size_t kMostNoteBytes = 4 * 1024;
constexpr std::size_t kMostClients = 8;

/// The note of the first reply.
constexpr char const* kVersion = "console 1";

enum class RequestKind { kRun, kComplete, kHelp };

struct Request {
    RequestKind kind = RequestKind::kRun;
    std::string text;
};

/// A line, with its line feed. Line feeds in the text become blanks.
std::string EncodeRequest(Request const& inRequest);
/// Of a line without its line feed; nothing if it is no request.
std::optional<Request> DecodeRequest(std::string const& inLine);

enum class ReplyKind { kHello, kRan, kUnknown, kFailed, kRefused, kCompletions };

struct Reply {
    ReplyKind kind = ReplyKind::kHello;
    std::string note; ///< one line for a person; may be empty
    std::string body;
};

/// The note is cut after `kMostNoteBytes`, and control characters in it become blanks.
std::string EncodeReply(Reply const& inReply);

/// Takes lines off a stream of bytes.
class LineReader {
public:
    enum class Result { kNone, kLine, kTooLong };

    void Append(char const* inBytes, std::size_t inCount) { mBytes.append(inBytes, inCount); }
    /// The next line without its line feed, or the carriage return in front of it. Of a line that
    /// is too long nothing is kept: that it is one is known before it ends.
    Result Take(std::string& outLine);

private:
    std::string mBytes;
    bool mIsSkipping = false; // the rest of a line that is too long
};

/// Takes replies off a stream of bytes.
class ReplyReader {
public:
    void Append(char const* inBytes, std::size_t inCount) { mBytes.append(inBytes, inCount); }
    std::optional<Reply> Take();
    /// What came is no reply, and nothing more can be taken.
    bool IsBroken() const noexcept { return mIsBroken; }

private:
    std::string mBytes;
    bool mIsBroken = false;
};

} // namespace brindle::console
