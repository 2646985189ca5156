#include <brindle/filesupport/CopyBytes.h>

#include <algorithm>
#include <vector>

namespace brindle::filesupport {

namespace {

constexpr std::uint32_t kBlockSize = 128 * 1024;

/// Fills the block by `Get`; returns how many bytes there were, fewer only at the end.
std::uint32_t GetBlock(IByteStream& inSource, std::vector<std::uint8_t>& outBlock) {
    std::uint32_t count = 0;
    try {
        for (; count < kBlockSize; ++count) {
            outBlock[count] = inSource.Get();
        }
    } catch (eof_error const&) {
    }
    return count;
}

std::uint64_t CopyToTheEnd(IByteStream& inSource, OByteStream& outSink,
                           CopyProgress const& inProgress) {
    std::vector<std::uint8_t> block(kBlockSize);
    std::uint64_t done = 0;
    for (std::uint32_t count = kBlockSize; count == kBlockSize;) {
        count = GetBlock(inSource, block);
        outSink.WriteBlock(block.data(), count);
        done += count;
        if (inProgress) {
            inProgress(done, 0);
        }
    }
    return done;
}

} // namespace

std::uint64_t CopyBytes(IByteStream& inSource, OByteStream& outSink,
                        CopyProgress const& inProgress) {
    auto const length = inSource.Length();
    if (length == 0) {
        return CopyToTheEnd(inSource, outSink, inProgress);
    }
    auto position = inSource.CurPos();
    auto const total = length - std::min(position, length);
    std::vector<std::uint8_t> block(
        static_cast<std::size_t>(std::min<std::uint64_t>(total, kBlockSize)));
    for (std::uint64_t done = 0; done < total;) {
        auto const count =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(total - done, kBlockSize));
        try {
            inSource.ReadBlock(block.data(), count);
        } catch (eof_error const&) {
            outSink.WriteBlock(block.data(),
                               static_cast<std::uint32_t>(inSource.CurPos() - position));
            throw;
        }
        outSink.WriteBlock(block.data(), count);
        position += count;
        done += count;
        if (inProgress) {
            inProgress(done, total);
        }
    }
    return total;
}

} // namespace brindle::filesupport
