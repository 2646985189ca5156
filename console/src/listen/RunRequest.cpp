#include "console/src/listen/RunRequest.h"

#include "console/src/listen/BoundedTextBuffer.h"
#include "console/src/listen/WholeText.h"

#include <brindle/config/Describe.h>
#include <brindle/console/Completion.h>
#include <brindle/console/Console.h>
#include <brindle/utility/StringStreams.h>

#include <exception>

namespace brindle::console {

namespace {

Reply RunCommand(UTF16String const& inLine) {
    BoundedTextBuffer buffer(kMostOutputUnits);
    UTF16OutputStream out(&buffer);
    Reply reply;
    try {
        bool const hasRun = ExecuteCommand(inLine, out);
        reply.kind = hasRun ? ReplyKind::kRan : ReplyKind::kUnknown;
        reply.note = buffer.IsCut() ? "the output was too long, and is cut" : "";
    } catch (std::exception const& error) {
        reply.kind = ReplyKind::kFailed;
        reply.note = config::DescribeInUTF8(error);
    } catch (...) {
        reply.kind = ReplyKind::kFailed;
        reply.note = "an exception of an unknown type";
    }
    reply.body = ToBytes(buffer.Text());
    return reply;
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
    if (inRequest.kind == RequestKind::kComplete) {
        return OfferCompletions(inRequest.text);
    }
    auto const line = FromBytes(inRequest.text);
    return line ? RunCommand(*line) : Reply{ReplyKind::kRefused, "the line is not UTF-8", {}};
}

} // namespace brindle::console
