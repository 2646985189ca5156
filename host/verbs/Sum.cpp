#include "host/verbs/Verbs.h"

#include "host/commandline/EscapedText.h"
#include "host/files/FilesBelow.h"
#include "host/files/Input.h"
#include "host/files/SumInOrder.h"

#include <brindle/filesupport/NativePath.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <utility>

namespace brindle::host {

namespace {

struct PathToSum {
    std::string path;
    bool isNamed; ///< by an operand, so that it is read whatever it is

    bool operator<(PathToSum const& inRHS) const { return path < inRHS.path; }
};

/// The operands that are no directories, and all files below those that are, sorted byte by byte.
std::vector<PathToSum> PathsOf(std::vector<std::string> const& inOperands,
                               Diagnostics& ioDiagnostics) {
    std::vector<PathToSum> paths;
    FoundFiles found;
    for (std::string const& operand : inOperands) {
        filesupport::Dir const dir = filesupport::DirFromNative(operand);
        if (operand != kStandardStream && dir.Exists()) {
            FindFilesBelow(dir, found, ioDiagnostics);
        } else {
            paths.push_back({operand, true});
        }
    }
    for (std::string const& dir : found.unreadableDirs) {
        ioDiagnostics.Report(dir, kCannotReadDirectory);
    }
    paths.reserve(paths.size() + found.files.size());
    for (std::string& file : found.files) {
        paths.push_back({std::move(file), false});
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

void PrintLine(FileSum const& inSum, std::string const& inPath) {
    std::string const name = EscapedText(inPath);
    utility::streams::Out << (name.size() != inPath.size() ? "\\" : "") << CRCText(inSum.crc)
                          << "  " << std::to_string(inSum.size) << "  " << name << '\n';
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    if (inArguments.Operands().empty()) {
        throw usage_error("sum needs a PATH");
    }
    std::uint32_t const jobs = Jobs(inArguments);
    std::vector<PathToSum> const paths = PathsOf(inArguments.Operands(), ioDiagnostics);
    auto const sum = [&paths](std::size_t inIndex) {
        auto const& [path, isNamed] = paths[inIndex];
        return isNamed ? SumOfAny(path) : SumOf(filesupport::FileFromNative(path));
    };
    auto const print = [&](std::size_t inIndex, SumOutcome const& inOutcome) {
        if (inOutcome.failure.empty()) {
            ioDiagnostics.MakeRoomForOutput();
            PrintLine(inOutcome.sum, paths[inIndex].path);
            RequireOutput();
        } else {
            ioDiagnostics.Report(paths[inIndex].path, inOutcome.failure);
        }
    };
    SumInOrder(paths.size(), jobs, ioDiagnostics, sum, print);
}

} // namespace

Verb const kSumVerb = {
    "sum",
    "[--jobs=N] PATH...",
    "CRC-32, size and path of every file below each PATH",
    "Writes a line for every file below each PATH, sorted by path: its CRC-32 as 8 hex digits,\n"
    "two blanks, its size in bytes, two blanks, its path. Backslashes and control characters in\n"
    "a path are written as \\\\, \\n, \\u001b and so on, bytes that are not UTF-8 as \\xff, and "
    "the\n"
    "line then begins with a backslash. Links to files are followed, links to directories are\n"
    "not entered.\n"
    "FIFOs, sockets and devices below a directory are reported and skipped; one that is a PATH\n"
    "itself is read. The PATH - is standard input.\n"
    "\n"
    "  --jobs=N  how many files may be summed at once, 1 to 1024; without it, one for each\n"
    "            processor\n",
    {"help", "jobs="},
    Run,
};

} // namespace brindle::host
