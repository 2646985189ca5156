#include "console/src/listen/RunRequest.h"

#include "console/src/listen/BoundedTextBuffer.h"
#include "utility/src/unicode/WholeText.h"

#include <brindle/config/Describe.h>
#include <brindle/console/Completion.h>
#include <brindle/console/Console.h>
#include <brindle/utility/StringStreams.h>
#include <brindle/utility/TextConversions.h>
#include <brindle/utility/Unicode.h>

#include <exception>

namespace brindle::console {

namespace {

/// Runs what writes to a stream and returns whether there was something to run.
template <typename Function>
Reply RunWithOutput(Function const& inFunction) {
    BoundedTextBuffer buffer(kMostOutputUnits);
    UTF16OutputStream out(&buffer);
    Reply reply;
    try {
        reply.kind = inFunction(out) ? ReplyKind::kRan : ReplyKind::kUnknown;
        reply.note = buffer.IsCut() ? "the output was too long, and is cut" : "";
    } catch (std::exception const& error) {
        reply.kind = ReplyKind::kFailed;
        reply.note = config::DescribeInUTF8(error);
    } catch (...) {
        reply.kind = ReplyKind::kFailed;
        reply.note = "an exception of an unknown type";
    }
    reply.body = utility::ToStd(buffer.Text());
    return reply;
}

Reply RunLine(std::string const& inLine) {
    utility::Replacements malformed;
    auto const line =
        utility::DecodeWholeUTF8(utility::AsciiToUTF8Impl(inLine.data()), inLine.size(), malformed);
    if (malformed.count > 0) {
        return {ReplyKind::kRefused, "the line is not UTF-8", {}};
    }
    return RunWithOutput([&](UTF16OutputStream& ioOut) { return ExecuteCommand(line, ioOut); });
}

/// The index of the word that they complete, and a line for each.
Reply OfferCompletions(std::string const& inLine) {
    auto const found = CompleteLine({inLine.begin(), inLine.end()}, inLine.size());
    Reply reply{ReplyKind::kCompletions, std::to_string(found.start), {}};
    for (auto const& candidate : found.candidates) {
        if (reply.body.size() + candidate.size() < kMostBodyBytes) {
            reply.body.append(candidate.begin(), candidate.end()) += '\n';
        }
    }
    return reply;
}

} // namespace

Reply RunRequest(Request const& inRequest) {
    switch (inRequest.kind) {
    case RequestKind::kRun:
        return RunLine(inRequest.text);
    case RequestKind::kComplete:
        return OfferCompletions(inRequest.text);
    case RequestKind::kHelp:
        break;
    }
    return RunWithOutput([](UTF16OutputStream& ioOut) {
        ListCommands(ioOut);
        return true;
    });
}

} // namespace brindle::console
