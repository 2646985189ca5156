#include "host/console/RunConsole.h"

#include "host/files/FileErrors.h"
#include "host/files/Input.h"
#include "host/lineedit/HistoryFile.h"
#include "host/lineedit/LineEditor.h"
#include "host/setup/HostErrorManager.h"

#include <brindle/config/Describe.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <string_view>
#include <system_error>

namespace brindle::host {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string Trimmed(std::string const& inLine) {
    constexpr char kBlanks[] = " \t\r";
    auto const start = std::min(inLine.find_first_not_of(kBlanks), inLine.size());
    return inLine.substr(start, inLine.find_last_not_of(kBlanks) + 1 - start);
}

/// Whether this is the first word of the line; in names of commands, case does not matter.
bool IsCommand(std::string const& inLine, std::string_view inWord) {
    auto const end = std::min(inLine.find(' '), inLine.size());
    return std::equal(inLine.begin(), inLine.begin() + static_cast<std::ptrdiff_t>(end),
                      inWord.begin(), inWord.end(), [](char lhs, char rhs) {
                          return (lhs >= 'A' && lhs <= 'Z' ? lhs - 'A' + 'a' : lhs) == rhs;
                      });
}

/// Executes a line that is not empty and has no blanks around it. Throws what the target throws.
void Execute(ConsoleTarget& ioTarget, std::string const& inLine) {
    if (IsCommand(inLine, "help")) {
        ioTarget.ShowHelp();
    } else {
        ioTarget.Execute(inLine);
    }
}

/// The next line of standard input or of a file; false at its end.
class Lines {
public:
    explicit Lines(std::string const& inName) {
        if (inName != kStandardStream) {
            mFile = std::make_unique<Input>(inName);
        }
    }

    bool Next(std::string& outLine) {
        outLine.clear();
        return mFile != nullptr ? NextOfFile(outLine) : NextOfStandardInput(outLine);
    }

private:
    bool NextOfFile(std::string& outLine) {
        std::uint8_t byte = 0;
        bool isLine = false;
        while (mFile->ReadUpTo(&byte, 1) == 1) {
            isLine = true;
            if (byte == '\n') {
                break;
            }
            outLine += static_cast<char>(byte);
        }
        return isLine;
    }

    /// Not in blocks: who writes the lines may wait for the answer to one before the next.
    static bool NextOfStandardInput(std::string& outLine) {
        errno = 0;
        if (std::getline(utility::streams::In, outLine)) {
            return true;
        }
        if (utility::streams::In.bad() || std::ferror(stdin) != 0) {
            throw unreadable_error("cannot be read: " + std::generic_category().message(errno));
        }
        return false;
    }

    std::unique_ptr<Input> mFile; // null for standard input
};

/// What the target offers, and the words of the console itself.
LineCompletions Complete(ConsoleTarget& ioTarget, std::string const& inLine, std::size_t inCursor) {
    auto completions = ioTarget.Complete(inLine, inCursor);
    if (inLine.find(' ') >= inCursor) {
        for (std::string const word : {"help", "quit"}) {
            if (word.compare(0, inCursor, inLine, 0, inCursor) == 0) {
                completions.candidates.push_back(word);
            }
        }
    }
    return completions;
}

} // namespace

void RunConsoleAtTerminal(ConsoleTarget& ioTarget) {
    auto const complete = [&](std::string const& inLine, std::size_t inCursor) {
        return Complete(ioTarget, inLine, inCursor);
    };
    LineEditor editor(ioTarget.Prompt(), complete, HistoryPath("console_history"));
    for (std::string line; editor.ReadLine(line);) {
        line = Trimmed(line);
        if (IsCommand(line, "quit")) {
            break;
        }
        try {
            if (!line.empty()) {
                Execute(ioTarget, line);
            }
        } catch (output_error const&) {
            throw;
        } catch (detached_error const&) {
            throw;
        } catch (fatal_error const&) {
            // The error manager has reported it.
        } catch (line_error const& error) {
            WriteDiagnostic(error.what());
        } catch (std::exception const& error) {
            WriteDiagnostic(config::DescribeInUTF8(error));
        }
    }
}

void RunConsoleScript(ConsoleTarget& ioTarget, std::string const& inName,
                      Diagnostics& ioDiagnostics) {
    Lines lines(inName);
    std::string line;
    for (std::uint64_t number = 1; lines.Next(line); ++number) {
        if (number == 1 && line.compare(0, kByteOrderMark.size(), kByteOrderMark) == 0) {
            line.erase(0, kByteOrderMark.size());
        }
        line = Trimmed(line);
        if (IsCommand(line, "quit")) {
            break;
        }
        auto const report = [&](std::string const& inReason) {
            ioDiagnostics.Report(inName, "line " + std::to_string(number) + ": " + inReason);
        };
        try {
            if (!line.empty() && line[0] != '#') {
                Execute(ioTarget, line);
            }
        } catch (output_error const&) {
            throw;
        } catch (line_error const& error) {
            report(error.what());
            break;
        } catch (detached_error const& error) {
            report(error.what());
            break;
        } catch (fatal_error const&) {
            report("failed");
        } catch (std::exception const& error) {
            report(config::DescribeInUTF8(error));
        }
    }
}

} // namespace brindle::host
