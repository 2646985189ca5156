#include <brindle/console/Console.h>

#include "tests/support/InPreferences.h"

#include <brindle/console/Completion.h>
#include <brindle/filesupport/CommonDirs.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <locale>
#include <memory>
#include <regex>
#include <sstream>

namespace brindle::console {

namespace {

using tests::AsUTF8;
using tests::InProcess;
using tests::Narrow;
using tests::Wide;

std::string Replaced(std::string inText, std::string const& inOld, std::string const& inNew) {
    for (std::size_t at = 0; (at = inText.find(inOld, at)) != std::string::npos;) {
        inText.replace(at, inOld.size(), inNew);
        at += inNew.size();
    }
    return inText;
}

/// What a line prints, with line feeds for CR LF.
std::string OutputOf(std::string const& inLine) {
    std::basic_stringbuf<std::uint16_t> buffer;
    UTF16OutputStream out(&buffer);
    out << std::hex;
    try {
        if (inLine == "help") {
            ListCommands(out);
        } else if (!ExecuteCommand(Wide(inLine), out)) {
            out << u"(no command)\r\n";
        }
    } catch (std::exception const& problem) {
        return std::string("threw ") + problem.what() + '\n';
    }
    return Replaced(Narrow(buffer.str()), "\r\n", "\n");
}

/// The start and the candidates, at the "|" or at the end of the line.
std::string CompletionsOf(std::string const& inLine) {
    auto const cursor = std::min(inLine.find('|'), inLine.size());
    auto const found = CompleteLine(AsUTF8(Replaced(inLine, "|", "")), cursor);
    auto text = std::to_string(found.start) + ':';
    for (auto const& candidate : found.candidates) {
        text += ' ' + Narrow(candidate);
    }
    return text + '\n';
}

std::string OutputOfShell(std::string const& inCommand) {
    std::unique_ptr<FILE, int (*)(FILE*)> const pipe(::popen(inCommand.c_str(), "r"), ::pclose);
    char text[10'000];
    return {text, std::fread(text, 1, sizeof text, pipe.get())};
}

struct Dots : std::numpunct<wchar_t> {
    wchar_t do_thousands_sep() const override { return L'.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// A file has lines with "> " and a command, "? " and a text to complete, or "$ " and a command for
/// the shell, and behind each what it prints. "! " starts and stops the console, and "# " begins a
/// comment.
class Transcript : public tests::InPreferences, public testing::WithParamInterface<char const*> {
protected:
    /// Does again what the lines say, in a process of its own with a fresh preference directory.
    std::string Replayed(std::string const& inTranscript) const {
        return InProcess([&] {
            SetUpDirectories();
            // Numbers look the same in a host that formats them its own way.
            std::locale::global(std::locale(std::locale::classic(), new Dots));
            Initialize();
            std::string result;
            std::istringstream lines(inTranscript);
            for (std::string line; std::getline(lines, line);) {
                if (std::regex_match(line, std::regex("[#>?$!] .*"))) {
                    result += line + '\n' + ResultOf(line[0], line.substr(2));
                }
            }
            return result;
        });
    }

private:
    /// With names for what differs from run to run.
    std::string ResultOf(char inKind, std::string const& inLine) const {
        if (inKind == '!') {
            inLine == "Initialize" ? Initialize() : Terminate();
        }
        auto const dir = Narrow(mTemporary.Path());
        auto const line = Replaced(Replaced(inLine, "{dir}", dir), "{native}", mTemporary.Native());
        auto text = inKind == '>'   ? OutputOf(line)
                    : inKind == '?' ? CompletionsOf(line)
                    : inKind == '$' ? OutputOfShell("cd " + mTemporary.Native() + " && " + line)
                                    : "";
        text = Replaced(Replaced(text, dir, "{dir}"), mTemporary.Native(), "{native}");
        text = Replaced(text, dir.substr(dir.rfind('\\') + 1), "{name}");
        text = Replaced(text, Narrow(filesupport::Dir::CommonFilesDir().FullPath()), "{common}");
        text = std::regex_replace(text, std::regex("(  C:\n)(  .*\n)*"), "$1{more}\n");
        return std::regex_replace(text, std::regex("\\b1[0-9]{17}\\b"), "{time}");
    }

    void SetUpDirectories() const {
        using namespace filesupport::commondirs;
        std::pair<void (*)(filesupport::Dir const&), char const*> const overrides[] = {
            {SetAppDirOverride, "C:\\app"},
            {SetExecutableDirOverride, "C:\\bin"},
            {SetResourcesDirOverride, "C:\\share"},
            {SetPluginsDirOverride, "C:\\plugins"},
            {SetRequiredPluginsDirOverride, "C:\\required"}};
        for (auto const& [set, path] : overrides) {
            set(filesupport::Dir(Wide(path)));
        }
        for (char const* const name : {"TMPDIR", "HOME", "XDG_DOCUMENTS_DIR"}) {
            ::setenv(name, mTemporary.Native().c_str(), 1);
        }
    }
};

TEST_P(Transcript, IsWhatTheCommandsPrint) {
    auto const transcript =
        ContentOf(BRINDLE_SOURCES "/tests/console/transcripts/" + std::string(GetParam()) + ".txt");
    EXPECT_NE(transcript, "");
    EXPECT_EQ(Replayed(transcript), transcript);
}

INSTANTIATE_TEST_SUITE_P(Of, Transcript,
                         testing::Values("names", "debug", "trace", "files", "directories",
                                         "completion"),
                         [](auto const& name) { return std::string(name.param); });

} // namespace

} // namespace brindle::console
