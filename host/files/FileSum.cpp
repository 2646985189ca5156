#include "host/files/FileSum.h"

#include "host/files/Input.h"
#include "host/files/SystemReason.h"

#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/FileExceptions.h>
#include <brindle/filesupport/FileKind.h>
#include <brindle/filesupport/PlatformByteStreams.h>

#include <cstdio>
#include <vector>

namespace brindle::host {

using namespace filesupport;

namespace {

constexpr std::uint32_t kBlockSize = 128 * 1024;

/// The sum of what `inReadUpTo` reads: the bytes that it puts into a block, and how many they are,
/// fewer than a block at the end.
template <typename ReadUpTo>
FileSum SumOfBlocks(ReadUpTo const& inReadUpTo) {
    static thread_local std::vector<std::uint8_t> S_block(kBlockSize);
    OCountingByteStream counter;
    OCRCByteStream crc(counter);
    for (std::uint32_t count = kBlockSize; count == kBlockSize;) {
        count = inReadUpTo(S_block.data());
        crc.WriteBlock(S_block.data(), count);
    }
    return {crc.Value(), counter.Count()};
}

/// Reads a block, or fewer bytes if the file ends first.
std::uint32_t ReadBlockOf(IPlatformByteStream& ioFile, std::uint8_t* outBlock) {
    std::uint64_t const start = ioFile.CurPos();
    try {
        ioFile.ReadBlock(outBlock, kBlockSize);
    } catch (eof_error const&) {
        // The block then begins with what there was, and the position has moved by as much.
    }
    return static_cast<std::uint32_t>(ioFile.CurPos() - start);
}

} // namespace

std::string CRCText(std::uint32_t inCRC) {
    char text[9];
    std::snprintf(text, sizeof text, "%08x", static_cast<unsigned>(inCRC));
    return text;
}

FileSum SumOf(File const& inFile) {
    try {
        IPlatformByteStream source(inFile, kShareWithEverybody);
        std::uint64_t const length = source.Length();
        FileSum const sum =
            SumOfBlocks([&](std::uint8_t* outBlock) { return ReadBlockOf(source, outBlock); });
        if (sum.size < length) {
            throw unsteady_error("became shorter while it was read");
        }
        return sum;
    } catch (file_not_found_exception const&) {
        throw missing_error();
    } catch (byte_stream_exception const& failure) {
        FileKind const kind = KindOf(inFile);
        if (kind != FileKind::kRegular && kind != FileKind::kMissing) {
            throw irregular_error(kind);
        }
        throw unreadable_error(ReasonText(failure));
    }
}

FileSum SumOfAny(std::string const& inName) {
    Input input(inName);
    return SumOfBlocks(
        [&](std::uint8_t* outBlock) { return input.ReadUpTo(outBlock, kBlockSize); });
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
    } catch (file_exception const& failure) {
        throw unreadable_error(ReasonText(failure));
    }
}

} // namespace brindle::host
