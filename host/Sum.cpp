#include "host/Verbs.h"

#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/NativePath.h>
#include <brindle/filesupport/PlatformByteStreams.h>
#include <brindle/filesupport/RecursiveFileIterator.h>
#include <brindle/utility/Streams.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace brindle::host {

namespace {

using namespace filesupport;

constexpr std::uint32_t kMostJobs = 1024;
constexpr std::size_t kBlockSize = 128 * 1024;

/// A file cannot be summed; `what()` says why.
class unreadable_error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct FileSum {
    std::uint32_t crc;
    std::uint64_t size;
};

void RequireRegular(FileKind inKind) {
    switch (inKind) {
    case FileKind::kRegular:
        return;
    case FileKind::kMissing:
        throw unreadable_error("no such file or directory");
    case FileKind::kDirectory:
        throw unreadable_error("has become a directory");
    case FileKind::kPipe:
        throw unreadable_error("skipped, it is a FIFO");
    case FileKind::kSocket:
        throw unreadable_error("skipped, it is a socket");
    case FileKind::kDevice:
        throw unreadable_error("skipped, it is a device");
    case FileKind::kOther:
        throw unreadable_error("skipped, it is no regular file");
    }
}

/// Hands the bytes of a file to a stream, block by block.
void CopyBlocks(IPlatformByteStream& inSource, OByteStream& outSink) {
    static std::vector<std::uint8_t> S_block(kBlockSize);
    std::uint64_t left = inSource.Length();
    if (left == 0) {
        outSink << inSource; // the system tells no size of files that it makes up as they are read
        return;
    }
    while (left != 0) {
        auto const count = static_cast<std::uint32_t>(std::min<std::uint64_t>(left, kBlockSize));
        inSource.ReadBlock(S_block.data(), count);
        outSink.WriteBlock(S_block.data(), count);
        left -= count;
    }
}

/// Throws `unreadable_error`.
FileSum SumOf(File const& inFile) {
    RequireRegular(KindOf(inFile));
    try {
        IPlatformByteStream source(inFile);
        OCountingByteStream counter;
        OCRCByteStream crc(counter);
        CopyBlocks(source, crc);
        return {crc.Value(), counter.Count()};
    } catch (file_not_found_exception const&) {
        throw unreadable_error("no such file or directory");
    } catch (eof_error const&) {
        throw unreadable_error("became shorter while it was read");
    } catch (byte_stream_exception const&) {
        throw unreadable_error("cannot be read");
    }
}

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

} // namespace

namespace {

void Run(Arguments const& inArguments, Diagnostics& ioDiagnostics) {
    if (inArguments.Operands().empty()) {
        throw usage_error("sum needs a PATH");
    }
    inArguments.Number("jobs", 1, kMostJobs, 1);

    std::vector<std::string> const paths = FilesBelow(inArguments.Operands(), ioDiagnostics);
    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        ioDiagnostics.ShowProgress("summed " + std::to_string(i) + " of " +
                                   std::to_string(paths.size()) + " files, " +
                                   std::to_string(bytes >> 20) + " MiB");
        try {
            FileSum const sum = SumOf(FileFromNative(paths[i]));
            bytes += sum.size;
            ioDiagnostics.MakeRoomForOutput();
            PrintLine(sum, paths[i]);
        } catch (unreadable_error const& error) {
            ioDiagnostics.Report(paths[i], error.what());
        }
    }
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
    "  --jobs=N  how many files may be summed at once, 1 to 1024; one is, for any N\n",
    {"help", "jobs"},
    Run,
};

} // namespace brindle::host
