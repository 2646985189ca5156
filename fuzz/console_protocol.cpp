// Takes any bytes as what a console sends, as what a program replies, and as the name of a socket.
// What is understood must be written back as it was.

#include "console/src/listen/Protocol.h"
#include "console/src/listen/SocketNames.h"

#include <brindle/utility/TextConversions.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using namespace brindle::console;

namespace {

void Require(bool inIsTrue) {
    if (!inIsTrue) {
        std::abort();
    }
}

void ReadRequests(std::string const& inBytes) {
    LineReader lines;
    std::string line;
    for (std::size_t start = 0; start < inBytes.size(); start += 7) { // in pieces
        lines.Append(inBytes.data() + start, std::min<std::size_t>(7, inBytes.size() - start));
        while (lines.Take(line) == LineReader::Result::kLine) {
            Require(line.size() <= kMostLineBytes && line.find('\n') == std::string::npos);
            auto const request = DecodeRequest(line);
            bool const isWhole = request && line.find(' ') != std::string::npos;
            Require(!isWhole || EncodeRequest(*request) == line + '\n');
        }
    }
}

void ReadReplies(std::string const& inBytes) {
    ReplyReader replies;
    for (char const byte : inBytes) {
        replies.Append(&byte, 1);
        while (auto const reply = replies.Take()) {
            ReplyReader again;
            auto const bytes = EncodeReply(*reply);
            again.Append(bytes.data(), bytes.size());
            auto const same = again.Take();
            Require(same && same->kind == reply->kind && same->body == reply->body);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* inData, std::size_t inSize) {
    std::string const bytes(inData, inData + inSize);
    ReadRequests(bytes);
    ReadReplies(bytes);
    auto const program = ProgramOf(bytes);
    Require(!program || SocketName(program->name, program->processId) == bytes);
    auto const name = SocketName(brindle::utility::Utf16(bytes), 1);
    Require(name[0] != '.' && name.find('/') == std::string::npos && ProgramOf(name));
    return 0;
}
