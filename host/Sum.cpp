#include "host/FileSum.h"
#include "host/InOrder.h"
#include "host/Verbs.h"

#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/RecursiveFileIterator.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <cstdio>

namespace brindle::host {

namespace {

using namespace filesupport;

constexpr std::uint32_t kMostJobs = 1024;

/// What came of summing a file: a sum, or a reason why there is none.
struct Outcome {
    FileSum sum;
    std::string failure;
};

/// The native paths of all files below the operands, sorted byte by byte.
std::vector<std::string> FilesBelow(std::vector<std::string> const& inOperands,
                                    Diagnostics& ioDiagnostics) {
    std::vector<std::string> paths;
    auto const reportUnreadable = [&ioDiagnostics](Dir const& inDir) {
        ioDiagnostics.Report(NativePath(inDir), "the directory cannot be read");
    };
    for (std::string const& operand : inOperands) {
        Dir const dir = DirFromNative(operand);
        if (!dir.Exists()) {
            paths.push_back(operand);
            continue;
        }
        RecursiveFileIterator const end;
        for (RecursiveFileIterator file(dir, false, reportUnreadable); file != end; ++file) {
            paths.push_back(NativePath(*file));
            ioDiagnostics.ShowProgress("looking for files: " + std::to_string(paths.size()));
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

void PrintLine(FileSum const& inSum, std::string const& inPath) {
    std::string const name = EscapedName(inPath);
    char numbers[40];
    std::snprintf(numbers, sizeof numbers, "%08x  %llu  ", static_cast<unsigned>(inSum.crc),
                  static_cast<unsigned long long>(inSum.size));
    utility::streams::Out << (name.size() != inPath.size() ? "\\" : "") << numbers << name << '\n';
}

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    if (inArguments.Operands().empty()) {
        throw usage_error("sum needs a PATH");
    }
    constexpr std::uint32_t kAsManyAsProcessors = 0;
    auto const jobs = inArguments.Number("jobs", 1, kMostJobs, kAsManyAsProcessors);

    std::vector<std::string> const paths = FilesBelow(inArguments.Operands(), ioDiagnostics);
    std::vector<Outcome> outcomes(std::min(paths.size(), kMostAhead));
    std::uint64_t bytes = 0;
    auto const showProgress = [&](std::size_t inDone) {
        ioDiagnostics.ShowProgress("summed " + std::to_string(inDone) + " of " +
                                   std::to_string(paths.size()) + " files, " +
                                   std::to_string(bytes >> 20) + " MiB");
    };
    auto const sum = [&](std::size_t inIndex) {
        Outcome& outcome = outcomes[inIndex % kMostAhead];
        outcome = Outcome();
        try {
            outcome.sum = SumOf(FileFromNative(paths[inIndex]));
        } catch (unreadable_error const& error) {
            outcome.failure = error.what();
        }
    };
    auto const print = [&](std::size_t inIndex) {
        Outcome const& outcome = outcomes[inIndex % kMostAhead];
        if (outcome.failure.empty()) {
            bytes += outcome.sum.size;
            ioDiagnostics.MakeRoomForOutput();
            PrintLine(outcome.sum, paths[inIndex]);
        } else {
            ioDiagnostics.Report(paths[inIndex], outcome.failure);
        }
        showProgress(inIndex + 1);
    };
    showProgress(0);
    RunInOrder(paths.size(), jobs, sum, print);
}

} // namespace

Verb const kSumVerb = {
    "sum",
    "[--jobs=N] PATH...",
    "CRC-32, size and path of every file below each PATH",
    "Writes a line for every file below each PATH, sorted by path: its CRC-32 as 8 hex "
    "digits,\n"
    "two blanks, its size in bytes, two blanks, its path. A path that holds a backslash, a\n"
    "newline or a carriage return has them written as \\\\, \\n and \\r, and its line begins\n"
    "with a backslash. Links to files are followed, links to directories are not entered.\n"
    "FIFOs, sockets and devices are reported and skipped.\n"
    "\n"
    "  --jobs=N  how many files may be summed at once, 1 to 1024; without it, one for each\n"
    "            processor\n",
    {"help", "jobs"},
    Run,
};

} // namespace brindle::host
