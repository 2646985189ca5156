#include "console/src/listen/Protocol.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace brindle::console {

namespace {

// In the order of their enumerations.
constexpr std::string_view kRequests[] = {"run", "complete", "help"};
constexpr std::string_view kReplies[] = {"hello",  "ran",     "unknown",
                                         "failed", "refused", "completions"};
constexpr std::size_t kMostHeaderBytes = kMostNoteBytes + 64;

/// Takes the text up to the first blank, which is dropped, or all of it.
std::string_view TakeWord(std::string_view& ioText) noexcept {
    auto const word = ioText.substr(0, ioText.find(' '));
    ioText.remove_prefix(std::min(ioText.size(), word.size() + 1));
    return word;
}

template <typename Kind, typename Words>
std::optional<Kind> KindOf(std::string_view inWord, Words const& inWords) noexcept {
    auto const found = std::find(std::begin(inWords), std::end(inWords), inWord);
    if (found == std::end(inWords)) {
        return {};
    }
    return static_cast<Kind>(found - std::begin(inWords));
}

std::optional<std::size_t> LengthOf(std::string_view inDigits) noexcept {
    std::size_t length = 0;
    auto const end = inDigits.data() + inDigits.size();
    auto const read = std::from_chars(inDigits.data(), end, length);
    bool const isLength = !inDigits.empty() && read.ec == std::errc() && read.ptr == end;
    return isLength && length <= kMostBodyBytes ? std::optional<std::size_t>(length) : std::nullopt;
}

std::string Note(std::string const& inText) {
    auto note = inText.substr(0, kMostNoteBytes);
    std::replace_if(
        note.begin(), note.end(),
        [](char inByte) { return static_cast<unsigned char>(inByte) < ' ' || inByte == '\x7F'; },
        ' ');
    return note;
}

} // namespace

std::string EncodeRequest(Request const& inRequest) {
    auto text = inRequest.text;
    std::replace(text.begin(), text.end(), '\n', ' ');
    return std::string(kRequests[static_cast<int>(inRequest.kind)]) + ' ' + text + '\n';
}

std::optional<Request> DecodeRequest(std::string const& inLine) {
    std::string_view text = inLine;
    auto const kind = KindOf<RequestKind>(TakeWord(text), kRequests);
    return kind ? std::optional<Request>({*kind, std::string(text)}) : std::nullopt;
}

std::string EncodeReply(Reply const& inReply) {
    auto header = std::string(kReplies[static_cast<int>(inReply.kind)]) + ' ' +
                  std::to_string(inReply.body.size());
    if (!inReply.note.empty()) {
        header += ' ' + Note(inReply.note);
    }
    return header + '\n' + inReply.body;
}

LineReader::Result LineReader::Take(std::string& outLine) {
    auto end = mBytes.find('\n');
    if (mIsSkipping) {
        mBytes.erase(0, end == std::string::npos ? end : end + 1);
        if (end == std::string::npos) {
            return Result::kNone;
        }
        mIsSkipping = false;
        end = mBytes.find('\n');
    }
    if (std::min(end, mBytes.size()) > kMostLineBytes) {
        mIsSkipping = end == std::string::npos;
        mBytes.erase(0, mIsSkipping ? end : end + 1);
        return Result::kTooLong;
    }
    if (end == std::string::npos) {
        return Result::kNone;
    }
    outLine = mBytes.substr(0, end);
    mBytes.erase(0, end + 1);
    if (!outLine.empty() && outLine.back() == '\r') {
        outLine.pop_back();
    }
    return Result::kLine;
}

std::optional<Reply> ReplyReader::Take() {
    auto const end = mBytes.find('\n');
    if (mIsBroken || end == std::string::npos || end > kMostHeaderBytes) {
        mIsBroken |= std::min(end, mBytes.size()) > kMostHeaderBytes;
        return {};
    }
    std::string_view header(mBytes.data(), end);
    auto const kind = KindOf<ReplyKind>(TakeWord(header), kReplies);
    auto const length = LengthOf(TakeWord(header));
    if (!kind || !length) {
        mIsBroken = true;
        return {};
    }
    if (mBytes.size() - end - 1 < *length) {
        return {};
    }
    Reply reply{*kind, std::string(header), mBytes.substr(end + 1, *length)};
    mBytes.erase(0, end + 1 + *length);
    return reply;
}

} // namespace brindle::console
