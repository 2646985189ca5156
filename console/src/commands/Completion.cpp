#include <brindle/console/Completion.h>

#include "console/src/registry/AsciiCase.h"
#include "console/src/registry/RegisteredCommands.h"

#include <brindle/debug/DebugDatabase.h>
#include <brindle/debug/Trace.h>
#include <brindle/filesupport/DirectoryIterators.h>
#include <brindle/utility/Unicode.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <list>

namespace brindle::console {

namespace {

using Candidates = std::vector<UTF8String>;

constexpr std::uint8_t kQuote = '"';

UTF8String InLowerCase(UTF8String inText) {
    std::transform(inText.begin(), inText.end(), inText.begin(), LowerCased<std::uint8_t>);
    return inText;
}

bool BeginsWith(UTF8String const& inText, UTF8String const& inStart) {
    return inText.compare(0, inStart.size(), inStart) == 0;
}

/// False for what nobody can type into a line.
bool IsTypable(UTF8String const& inText) {
    return !inText.empty() &&
           std::none_of(inText.begin(), inText.end(), [](auto byte) { return byte < ' '; });
}

Candidates NamesOfCommands(UTF8String const& inWord) {
    Candidates candidates;
    auto const start = InLowerCase(inWord);
    for (auto const& command : CommandRegistry::Descriptions()) {
        auto const name = utility::UTF16to8(command.name);
        bool const canBeExecuted = name.find(' ') == UTF8String::npos;
        if (canBeExecuted && BeginsWith(InLowerCase(name), start)) {
            candidates.push_back(name);
        }
    }
    return candidates;
}

Candidates DebugKeys(UTF8String const& inWord) {
    std::list<UTF8String> keys;
    debug::DebugDatabase::Instance().GetDebugKeys(keys);
    Candidates candidates;
    std::copy_if(keys.begin(), keys.end(), std::back_inserter(candidates),
                 [&](auto const& key) { return BeginsWith(key, inWord); });
    return candidates;
}

/// Behind `debug.set` only in front of the value.
Candidates DebugKeysToSet(UTF8String const& inWord) {
    return inWord.find('=') == UTF8String::npos ? DebugKeys(inWord) : Candidates();
}

Candidates TraceCategories(UTF8String const& inWord) {
    bool const isQuoted = !inWord.empty() && inWord[0] == kQuote;
    auto const start = inWord.substr(isQuoted ? 1 : 0);
    std::list<UTF8String> names;
    debug::GetTraceCategories(names);
    Candidates candidates;
    for (auto const& name : names) {
        if (BeginsWith(name, start) && name.find(kQuote) == UTF8String::npos) {
            bool const needsQuotes = isQuoted || name.find(' ') != UTF8String::npos;
            candidates.push_back(needsQuotes ? kQuote + name + UTF8String(1, kQuote) : name);
        }
    }
    return candidates;
}

/// Behind `trace.set` only in front of the volume.
Candidates TraceCategoriesToSet(UTF8String const& inWord) {
    bool const isQuoted = !inWord.empty() && inWord[0] == kQuote;
    bool const isBehind = !isQuoted && inWord.find(' ') != UTF8String::npos;
    return isBehind ? Candidates() : TraceCategories(inWord);
}

/// Appends the names that are at the end of the paths. Names with a dot in front are hidden until
/// somebody types the dot.
template <typename Iterator>
void AppendNames(Iterator inBegin, Iterator const& inEnd, UTF8String const& inDirectory,
                 UTF8String const& inStart, UTF8String const& inBehind, Candidates& ioCandidates) {
    for (; inBegin != inEnd; ++inBegin) {
        auto const name = utility::UTF16to8((*inBegin).GetName());
        bool const isHidden = inStart.empty() && BeginsWith(name, "."_utf8);
        if (!isHidden && BeginsWith(name, inStart)) {
            ioCandidates.push_back(inDirectory + name + inBehind);
        }
    }
}

Candidates Paths(UTF8String const& inWord, bool inWithFiles) {
    static constexpr std::uint8_t kSeparators[] = {'/', '\\', 0};
    auto const separator = inWord.find_last_of(kSeparators);
    Candidates candidates;
    if (separator == UTF8String::npos) {
        AppendNames(filesupport::Dir::BeginVolumes(), filesupport::Dir::EndVolumes(), UTF8String(),
                    inWord, "\\"_utf8, candidates);
        return candidates;
    }
    auto const directory = inWord.substr(0, separator + 1);
    auto const start = inWord.substr(separator + 1);
    filesupport::Dir const dir(utility::UTF8to16(directory));
    AppendNames(dir.BeginSubdirs(false), dir.EndSubdirs(), directory, start,
                UTF8String(1, inWord[separator]), candidates);
    if (inWithFiles) {
        AppendNames(dir.BeginFiles(false), dir.EndFiles(), directory, start, UTF8String(),
                    candidates);
    }
    return candidates;
}

Candidates PathsOfFiles(UTF8String const& inWord) {
    return Paths(inWord, true);
}

Candidates PathsOfDirectories(UTF8String const& inWord) {
    return Paths(inWord, false);
}

struct ArgumentKind {
    char const* command;
    Candidates (*candidates)(UTF8String const& inWord);
};

constexpr ArgumentKind kArgumentKinds[] = {
    {"debug.get", DebugKeys},           {"debug.set", DebugKeysToSet},
    {"trace.get", TraceCategories},     {"trace.set", TraceCategoriesToSet},
    {"filesupport.file", PathsOfFiles}, {"filesupport.dir", PathsOfDirectories},
};

Candidates CandidatesFor(UTF8String const& inCommand, UTF8String const& inWord) {
    for (auto const& kind : kArgumentKinds) {
        if (InLowerCase(inCommand) == utility::AsciiToUTF8Impl(kind.command)) {
            return kind.candidates(inWord);
        }
    }
    return {};
}

} // namespace

Completions CompleteLine(UTF8String const& inLine, std::size_t inCursor) {
    auto const line = inLine.substr(0, inCursor);
    Completions completions;
    auto const nameEnd = line.find(' ');
    try {
        if (nameEnd == UTF8String::npos) {
            completions.candidates = NamesOfCommands(line);
        } else {
            completions.start = std::min(line.find_first_not_of(' ', nameEnd), line.size());
            completions.candidates =
                CandidatesFor(line.substr(0, nameEnd), line.substr(completions.start));
        }
    } catch (std::exception const&) {
        // The databases cannot be read.
    }
    auto& candidates = completions.candidates;
    auto const isUntypable = [](auto const& candidate) { return !IsTypable(candidate); };
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), isUntypable),
                     candidates.end());
    std::sort(candidates.begin(), candidates.end());
    return completions;
}

} // namespace brindle::console
