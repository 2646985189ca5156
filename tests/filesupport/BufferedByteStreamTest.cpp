#include <brindle/filesupport/BufferedByteStream.h>

#include "tests/filesupport/RecordingStreams.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace brindle::filesupport {
namespace {

class BufferedByteStreams : public testing::Test {
protected:
    std::uint32_t Below(std::uint64_t inLimit) {
        return static_cast<std::uint32_t>(random() % inLimit);
    }
    std::string SomeBytes(std::size_t inSize) {
        std::string bytes(inSize, 0);
        std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<char>(random()); });
        return bytes;
    }

    std::mt19937 random{7};
    RecordingSource source;
    RecordingSink sink;
    std::uint8_t block[300] = {};
};

/// Which part of the source must be read for the next request: ranges alone, without a buffer.
struct RefillModel {
    void Request(std::uint64_t inPosition, std::uint64_t inCount) {
        if (bufferedStart <= inPosition && inPosition + inCount <= bufferedEnd) {
            return;
        }
        auto start = inPosition / blockSize * blockSize;
        if (start > blockSize && start - blockSize + bufferSize > inPosition + inCount) {
            start -= blockSize;
        }
        auto const end = std::min(length, start + bufferSize);
        auto const from = bufferedStart <= start && start < bufferedEnd ? bufferedEnd : start;
        auto const to = start < bufferedStart && bufferedStart <= end ? bufferedStart : end;
        reads.emplace_back(from, to - from);
        bufferedStart = start;
        bufferedEnd = end;
    }

    std::uint64_t length, bufferSize, blockSize;
    std::uint64_t bufferedStart = 0, bufferedEnd = 0;
    std::vector<Transfer> reads = {};
};

TEST_F(BufferedByteStreams, ReadLikeMemoryAndAskTheSourceForWhatIsMissing) {
    std::pair<std::uint32_t, std::uint32_t> const sizes[] = {
        {2, 1}, {16, 8}, {64, 8}, {100, 7}, {256, 128}};
    for (auto const& [bufferSize, blockSize] : sizes) {
        for (std::uint64_t const length : {0u, 1u, 63u, 64u, 1000u}) {
            source.data = SomeBytes(length);
            source.transfers.clear();
            IBufferedByteStream stream(source, bufferSize, blockSize);
            RefillModel model{length, bufferSize, blockSize};
            std::uint64_t position = 0;
            for (int i = 0; i < 1500; ++i) {
                auto const count = std::min<std::uint32_t>(
                    Below(200), static_cast<std::uint32_t>(length - position));
                switch (auto const action = Below(6)) {
                case 0: // anywhere
                    position = Below(length + 1);
                    stream.CurPos(position);
                    break;
                case 1: // a little back or forward
                    position -= std::min<std::uint64_t>(position, Below(40));
                    position = std::min<std::uint64_t>(position + Below(40), length);
                    stream.CurPos(position);
                    break;
                default:
                    if (position == length) {
                        ASSERT_THROW(stream.Get(), eof_error);
                    } else if (action == 2 && count != 0) {
                        if (count <= bufferSize - blockSize) {
                            model.Request(position, count);
                        } else {
                            model.reads.emplace_back(position, count);
                        }
                        stream.ReadBlock(block, count);
                        ASSERT_TRUE(
                            std::equal(block, block + count, Bytes(source.data) + position));
                        position += count;
                    } else {
                        model.Request(position, 1);
                        ASSERT_EQ(stream.Get(), Bytes(source.data)[position++]);
                    }
                }
                ASSERT_EQ(stream.CurPos(), position);
                ASSERT_EQ(source.transfers, model.reads);
            }
        }
    }
}

TEST_F(BufferedByteStreams, ReadRightAfterFailuresOfTheSourceAtAnySizes) {
    source.data = SomeBytes(500);
    std::pair<std::uint32_t, std::uint32_t> const sizes[] = {{0, 0}, {1, 1},  {7, 0},
                                                             {7, 7}, {32, 8}, {16, 0xFFFFFFFF}};
    for (auto const& [bufferSize, blockSize] : sizes) {
        for (source.failsEvery = 2; source.failsEvery < 8; ++source.failsEvery) {
            IBufferedByteStream stream(source, bufferSize, blockSize);
            for (int i = 0; i < 500; ++i) {
                auto const position = Below(480);
                auto const count = 1 + Below(20);
                stream.CurPos(position);
                try {
                    stream.ReadBlock(block, count);
                    ASSERT_TRUE(std::equal(block, block + count, Bytes(source.data) + position));
                } catch (io_error const&) {
                    ASSERT_EQ(stream.CurPos(), position);
                }
            }
        }
    }
}

TEST_F(BufferedByteStreams, RefuseWhatLiesPastTheEnd) {
    constexpr auto kFar = std::numeric_limits<std::uint64_t>::max();
    source.data = "abcdefghij";
    IBufferedByteStream stream(source, 8, 4);
    stream.CurPos(10);
    EXPECT_THROW(stream.CurPos(11), eof_error);
    EXPECT_THROW(stream.CurPos(kFar), eof_error);
    EXPECT_EQ(stream.CurPos(), 10u);
    stream.CurPos(8);
    EXPECT_THROW(stream.ReadBlock(block, 4), eof_error);
    EXPECT_EQ(block[1], 'j');
    EXPECT_EQ(stream.CurPos(), 10u);

    std::pair<std::uint64_t, std::uint32_t> const beyond[] = {
        {kFar, 1}, {kFar, 0xFFFFFFFF}, {11, 0}, {5, 6}};
    for (auto const& [position, count] : beyond) {
        EXPECT_THROW(stream.FillBuffer(position, count), eof_error);
    }
    stream.FillBuffer(0, 10);
    stream.FillBuffer(9, 1);
    stream.CurPos(1);
    EXPECT_EQ(stream.Get(), 'b');

    source.data = "abc";
    stream.CurPos(9);
    EXPECT_THROW(stream.ReadBlock(block, 1), eof_error);
    EXPECT_EQ(stream.Length(), 3u);
}

class LazyInput : public IBufferedByteStream {
public:
    using IBufferedByteStream::IBufferedByteStream;
    void FillBuffer(std::uint64_t, std::uint32_t) override {}
};

class LazyOutput : public OBufferedByteStream {
public:
    using OBufferedByteStream::OBufferedByteStream;
    void Flush() override {}
};

TEST_F(BufferedByteStreams, OverridesThatDoNothingCauseNoOverrun) {
    source.data = "abc";
    LazyInput in(source, 2, 1);
    EXPECT_THROW(in.Get(), eof_error);
    EXPECT_THROW(in.ReadBlock(block, 1), eof_error);

    LazyOutput out(sink, 2, 1);
    out.Put('a');
    out.Put('b');
    EXPECT_THROW(out.Put('c'), byte_stream_exception);
    EXPECT_THROW(out.WriteBlock(Bytes("cc"), 2), byte_stream_exception);
    EXPECT_THROW(out.CurPos(9), byte_stream_exception);
    EXPECT_EQ(out.CurPos(), 2u);
}

TEST_F(BufferedByteStreams, RewriteWithinTheRangeAndSendItAsOneBlock) {
    {
        OBufferedByteStream stream(sink, 16, 4);
        stream.WriteBlock(Bytes("0123456789"), 10);
        stream.CurPos(2);
        stream.Put('x');
        stream.Flush();
        stream.Flush();
        EXPECT_EQ(sink.data, "01x3456789");
        EXPECT_EQ(stream.CurPos(), 3u);

        // Right behind the range goes on in it; further off begins a new one; a large block goes
        // by.
        stream.Put('a');
        stream.CurPos(3);
        stream.CurPos(4);
        stream.Put('b');
        stream.CurPos(6);
        stream.Put('c');
        stream.WriteBlock(Bytes("0123456789abcdefg"), 17);
        stream.Put('d');
        EXPECT_EQ(stream.CurPos(), 25u);
    }
    EXPECT_EQ(sink.transfers, (std::vector<Transfer>{{0, 10}, {3, 2}, {6, 1}, {7, 17}, {24, 1}}));
}

TEST_F(BufferedByteStreams, WriteLikeMemoryWhateverFailsOnTheWay) {
    auto const data = SomeBytes(100);
    for (std::uint32_t const bufferSize : {0u, 1u, 2u, 7u, 32u, 1000u}) {
        for (int const every : {0, 3, 4, 7}) {
            sink.data.clear();
            std::string model;
            {
                OBufferedByteStream stream(sink, bufferSize, 4);
                sink.failsEvery = every;
                std::uint64_t position = 0;
                auto const untilDone = [&](auto const& inOperation) {
                    for (int attempts = 0; attempts < 4; ++attempts) {
                        try {
                            return inOperation();
                        } catch (io_error const&) {
                            ASSERT_EQ(stream.CurPos(), position);
                        }
                    }
                    FAIL();
                };
                for (int i = 0; i < 1000; ++i) {
                    auto const action = Below(8);
                    auto const count = action == 1 ? Below(50) : 1;
                    if (action == 0) {
                        auto const target = Below(200);
                        untilDone([&] { stream.CurPos(target); });
                        position = target;
                        continue;
                    }
                    if (action == 1) {
                        untilDone([&] { stream.WriteBlock(Bytes(data) + count, count); });
                    } else {
                        untilDone([&] { stream.Put(Bytes(data)[count]); });
                    }
                    if (count != 0) {
                        model.resize(std::max<std::size_t>(model.size(), position + count));
                        model.replace(position, count, data, count, count);
                        position += count;
                    }
                }
                untilDone([&] { stream.Flush(); });
                ASSERT_EQ(sink.data, model) << bufferSize << ' ' << every;
                sink.failsEvery = 1;
                stream.Put('x');
            }
            EXPECT_EQ(sink.data, model);
        }
    }
}

} // namespace
} // namespace brindle::filesupport
