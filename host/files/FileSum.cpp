#include "host/files/FileSum.h"

#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/PlatformByteStreams.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace brindle::host {

using namespace filesupport;

namespace {

constexpr std::size_t kBlockSize = 128 * 1024;

/// Copies a file into a stream, block by block.
void CopyBlocks(IPlatformByteStream& inSource, OByteStream& outSink) {
    static thread_local std::vector<std::uint8_t> S_block(kBlockSize);
    std::uint64_t left = inSource.Length();
    if (left == 0) {
        outSink
            << inSource; // files that the system generates on reading, as in /proc, have no size
        return;
    }
    while (left != 0) {
        auto const count = static_cast<std::uint32_t>(std::min<std::uint64_t>(left, kBlockSize));
        inSource.ReadBlock(S_block.data(), count);
        outSink.WriteBlock(S_block.data(), count);
        left -= count;
    }
}

} // namespace

std::string CRCText(std::uint32_t inCRC) {
    char text[9];
    std::snprintf(text, sizeof text, "%08x", static_cast<unsigned>(inCRC));
    return text;
}

void RequireRegular(File const& inFile) {
    FileKind const kind = KindOf(inFile);
    if (kind == FileKind::kMissing) {
        throw missing_error();
    }
    if (kind != FileKind::kRegular) {
        throw irregular_error(kind);
    }
}

FileSum SumOf(File const& inFile) {
    try {
        IPlatformByteStream source(inFile);
        OCountingByteStream counter;
        OCRCByteStream crc(counter);
        CopyBlocks(source, crc);
        return {crc.Value(), counter.Count()};
    } catch (file_not_found_exception const&) {
        throw missing_error();
    } catch (eof_error const&) {
        throw unsteady_error("became shorter while it was read");
    } catch (byte_stream_exception const&) {
        RequireRegular(inFile);
        throw unreadable_error("cannot be read");
    }
}

FileSum SteadySumOf(File const& inFile, std::uint64_t& outModified) {
    try {
        outModified = inFile.Modified();
        FileSum const sum = SumOf(inFile);
        if (inFile.Modified() != outModified) {
            throw unsteady_error("changed while it was read");
        }
        return sum;
    } catch (file_not_found_exception const&) {
        throw missing_error();
    } catch (file_exception const&) {
        throw unreadable_error("cannot be read");
    }
}

} // namespace brindle::host
