#include <brindle/console/RemoteConsole.h>

#include "console/src/listen/Protocol.h"
#include "console/src/listen/SocketNames.h"
#include "platform/LocalSocket.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <optional>
#include <sstream>
#include <utility>

namespace brindle::console {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kMostTimeToAccept = std::chrono::seconds(5);

/// Nothing for a text that is not a whole number.
template <typename Number>
std::optional<Number> NumberIn(std::string const& inText) {
    Number number = 0;
    auto const end = inText.data() + inText.size();
    auto const read = std::from_chars(inText.data(), end, number);
    bool const isNumber = read.ec == std::errc() && read.ptr == end;
    return isNumber ? std::optional<Number>(number) : std::nullopt;
}

RemoteAnswer::Outcome OutcomeOf(ReplyKind inKind) noexcept {
    switch (inKind) {
    case ReplyKind::kRan:
        return RemoteAnswer::Outcome::kRan;
    case ReplyKind::kUnknown:
        return RemoteAnswer::Outcome::kNoCommand;
    case ReplyKind::kFailed:
        return RemoteAnswer::Outcome::kFailed;
    default:
        return RemoteAnswer::Outcome::kRefused;
    }
}

RemoteAnswer AnswerOf(std::optional<Reply> const& inReply) {
    if (!inReply) {
        return {};
    }
    return {OutcomeOf(inReply->kind), {inReply->body.begin(), inReply->body.end()}, inReply->note};
}

} // namespace

std::vector<ListeningProgram> ListeningPrograms() {
    std::vector<ListeningProgram> programs;
    for (auto const& name : platform::LocalListeners().value) {
        if (auto const program = ProgramOf(name)) {
            programs.push_back(*program);
        }
    }
    return programs;
}

std::vector<ListeningProgram> ListeningPrograms(UTF16String const& inNameOrProcessId) {
    auto programs = ListeningPrograms();
    auto const name = EscapedProgramName(inNameOrProcessId); // as long as a name of a socket can be
    auto const isOther = [&](ListeningProgram const& inProgram) {
        return EscapedProgramName(inProgram.name) != name &&
               std::to_string(inProgram.processId) != name;
    };
    programs.erase(std::remove_if(programs.begin(), programs.end(), isOther), programs.end());
    return programs;
}

/// The connection to a program, of which one reply at most is under way.
class RemoteConsole::Connection {
public:
    explicit Connection(ListeningProgram const& inProgram) {
        auto connection = platform::ConnectLocally(SocketName(inProgram.name, inProgram.processId));
        if (!connection) {
            mFailure = connection.error == platform::kError_Busy
                           ? "the program does not answer"
                           : "the program does not listen any more";
            return;
        }
        mConnection = std::move(connection.value);
        mIsAttached = true;
        auto const hello = Receive(Clock::now() + kMostTimeToAccept);
        if (!hello) {
            mFailure = "the program does not answer";
        } else if (hello->kind != ReplyKind::kHello) {
            mFailure = "the program does not accept: " + hello->note;
        } else if (hello->note != kVersion) {
            mFailure = "the program has another version of the library";
        }
        mIsAttached = mFailure.empty();
    }

    bool IsAttached() const noexcept { return mIsAttached; }
    std::string const& Failure() const noexcept { return mFailure; }

    /// Nothing if the connection has ended.
    std::optional<Reply> Ask(Request const& inRequest) {
        if (!mIsAttached || !Send(EncodeRequest(inRequest))) {
            mIsAttached = false;
            return {};
        }
        return Receive({});
    }

private:
    bool Send(std::string const& inBytes) {
        for (std::size_t sent = 0; sent < inBytes.size();) {
            auto const count = mConnection.Write(inBytes.data() + sent, inBytes.size() - sent);
            if (!count) {
                return false;
            }
            sent += count.value;
            if (count.value == 0) {
                Await(false, {});
            }
        }
        return true;
    }

    std::optional<Reply> Receive(std::optional<Clock::time_point> inDeadline) {
        for (auto reply = mReplies.Take();; reply = mReplies.Take()) {
            bool const isTooLate = inDeadline && Clock::now() >= *inDeadline;
            if (reply || mReplies.IsBroken() || isTooLate || !ReadSome(inDeadline)) {
                mIsAttached = reply.has_value();
                return reply;
            }
        }
    }

    bool ReadSome(std::optional<Clock::time_point> inDeadline) {
        constexpr std::size_t kMostAtOnce = 64 * 1024;
        char bytes[kMostAtOnce];
        auto const count = mConnection.Read(bytes, sizeof(bytes));
        mReplies.Append(bytes, count.value);
        if (count && count.value == 0) {
            Await(true, inDeadline);
        }
        return static_cast<bool>(count);
    }

    void Await(bool inIsForInput, std::optional<Clock::time_point> inDeadline) const {
        using std::chrono::milliseconds;
        std::vector<platform::AwaitedDescriptor> awaited(1);
        awaited[0].descriptor = mConnection.Descriptor();
        awaited[0].awaitsInput = inIsForInput;
        awaited[0].awaitsRoom = !inIsForInput;
        auto const left = inDeadline ? std::chrono::ceil<milliseconds>(*inDeadline - Clock::now())
                                     : milliseconds(-1);
        platform::Await(awaited, inDeadline ? std::max(0, static_cast<int>(left.count())) : -1);
    }

    platform::LocalConnection mConnection;
    ReplyReader mReplies;
    std::string mFailure;
    bool mIsAttached = false;
};

RemoteConsole::RemoteConsole(ListeningProgram const& inProgram)
    : mConnection(std::make_unique<Connection>(inProgram)) {}

RemoteConsole::RemoteConsole(RemoteConsole&& inOther) noexcept = default;
RemoteConsole& RemoteConsole::operator=(RemoteConsole&& inOther) noexcept = default;
RemoteConsole::~RemoteConsole() = default;

bool RemoteConsole::IsAttached() const noexcept {
    return mConnection->IsAttached();
}

std::string const& RemoteConsole::Failure() const noexcept {
    return mConnection->Failure();
}

RemoteAnswer RemoteConsole::ExecuteCommand(UTF8String const& inLine) {
    return AnswerOf(mConnection->Ask({RequestKind::kRun, {inLine.begin(), inLine.end()}}));
}

RemoteAnswer RemoteConsole::ListCommands() {
    return AnswerOf(mConnection->Ask({RequestKind::kHelp, {}}));
}

Completions RemoteConsole::CompleteLine(UTF8String const& inLine, std::size_t inCursor) {
    auto const end =
        inLine.begin() + static_cast<std::ptrdiff_t>(std::min(inCursor, inLine.size()));
    Completions completions;
    auto const reply = mConnection->Ask({RequestKind::kComplete, {inLine.begin(), end}});
    auto const start = reply && reply->kind == ReplyKind::kCompletions
                           ? NumberIn<std::size_t>(reply->note)
                           : std::nullopt;
    if (!start || *start > inCursor) {
        return completions;
    }
    completions.start = *start;
    std::istringstream lines(reply->body);
    for (std::string line; std::getline(lines, line);) {
        completions.candidates.emplace_back(line.begin(), line.end());
    }
    return completions;
}

} // namespace brindle::console
