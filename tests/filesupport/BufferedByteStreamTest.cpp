#include <brindle/filesupport/BufferedByteStream.h>

#include "tests/filesupport/RecordingStreams.h"

#include <gtest/gtest.h>

#include <random>

namespace brindle::filesupport {
namespace {

class BufferedByteStreams : public testing::Test {
protected:
    BufferedByteStreams() {
        for (auto& byte : data) {
            byte = static_cast<char>(random());
        }
    }
    std::uint32_t Below(std::uint64_t inLimit) {
        return static_cast<std::uint32_t>(random() % inLimit);
    }

    std::mt19937 random{7};
    std::string data = std::string(1000, 0);
    RecordingSource source;
    RecordingSink sink;
    std::uint8_t block[300] = {};
};

/// What must be read from the source for each request: ranges alone, without a buffer.
struct ReadModel {
    void Request(std::uint64_t inPosition, std::uint64_t inCount) {
        if (inCount == 0 || (start <= inPosition && inPosition + inCount <= end)) {
            return;
        }
        auto newStart = inPosition / blockSize * blockSize;
        if (newStart > blockSize && newStart - blockSize + bufferSize > inPosition + inCount) {
            newStart -= blockSize;
        }
        auto const newEnd = std::min(length, newStart + bufferSize);
        auto const from = start <= newStart && newStart < end ? end : newStart;
        auto const to = newStart < start && start <= newEnd ? start : newEnd;
        reads.emplace_back(from, to - from);
        start = newStart;
        end = newEnd;
    }

    std::uint64_t length, bufferSize, blockSize;
    std::uint64_t start = 0, end = 0;
    std::vector<Transfer> reads = {};
};

TEST_F(BufferedByteStreams, ReadLikeMemoryAndAskTheSourceForWhatIsMissing) {
    // The sizes asked for, and those that they come to.
    std::uint32_t const sizes[][4] = {{2, 1, 2, 1},     {16, 8, 16, 8},         {64, 8, 64, 8},
                                      {100, 7, 100, 7}, {256, 128, 256, 128},   {0, 0, 2, 1},
                                      {7, 7, 7, 3},     {16, 0xFFFFFFFF, 16, 8}};
    for (auto const& [askedBuffer, askedBlock, bufferSize, blockSize] : sizes) {
        for (std::uint64_t const length : {0u, 1u, 63u, 64u, 1000u}) {
            for (int const failsEvery : {0, 3, 4}) {
                source.data = data.substr(0, length);
                source.transfers.clear();
                source.failsEvery = failsEvery;
                IBufferedByteStream stream(source, askedBuffer, askedBlock);
                ReadModel model{length, bufferSize, blockSize};
                std::uint64_t position = 0;
                for (int i = 0; i < 1000; ++i) {
                    auto const move = Below(6);
                    if (move == 0) {
                        position = Below(length + 1);
                    } else if (move == 1) {
                        position -= std::min<std::uint64_t>(position, Below(40));
                        position = std::min(length, position + Below(40));
                    }
                    stream.CurPos(position);
                    auto const count = static_cast<std::uint32_t>(
                        std::min<std::uint64_t>(i % 2 == 0 ? Below(200) : 1, length - position));
                    if (count > bufferSize - blockSize) {
                        model.reads.emplace_back(position, count);
                    } else {
                        model.Request(position, count);
                    }
                    try {
                        if (count == 1) {
                            block[0] = stream.Get();
                        } else {
                            stream.ReadBlock(block, count);
                        }
                        ASSERT_TRUE(std::equal(block, block + count, Bytes(data) + position));
                        position += count;
                    } catch (io_error const&) {
                        ASSERT_NE(failsEvery, 0);
                    }
                    ASSERT_EQ(stream.CurPos(), position);
                    ASSERT_TRUE(failsEvery != 0 || source.transfers == model.reads);
                }
            }
        }
    }
}

TEST_F(BufferedByteStreams, RefuseWhatLiesPastTheEnd) {
    source.data = "abcdefghij";
    IBufferedByteStream stream(source, 8, 4);
    stream.CurPos(10);
    EXPECT_THROW(stream.Get(), eof_error);
    for (std::uint64_t const position : {std::uint64_t{11}, ~std::uint64_t{0}}) {
        EXPECT_THROW(stream.CurPos(position), eof_error);
        EXPECT_THROW(stream.FillBuffer(position, 0xFFFFFFFF), eof_error);
    }
    EXPECT_EQ(stream.CurPos(), 10u);
    stream.CurPos(8);
    EXPECT_THROW(stream.ReadBlock(block, 4), eof_error);
    EXPECT_EQ(block[1], 'j');
    EXPECT_EQ(stream.CurPos(), 10u);
    EXPECT_THROW(stream.FillBuffer(5, 6), eof_error);
    stream.FillBuffer(0, 10);
    stream.FillBuffer(9, 1);
    stream.CurPos(1);
    EXPECT_EQ(stream.Get(), 'b');

    source.data = "abc";
    EXPECT_EQ(stream.Length(), 3u);
    stream.CurPos(9);
    stream.FillBuffer(0, 1);
    EXPECT_THROW(stream.Get(), eof_error);
}

TEST_F(BufferedByteStreams, OverridesThatDoNothingCauseNoOverrun) {
    struct LazyInput : IBufferedByteStream {
        using IBufferedByteStream::IBufferedByteStream;
        void FillBuffer(std::uint64_t, std::uint32_t) override {}
    };
    struct LazyOutput : OBufferedByteStream {
        using OBufferedByteStream::OBufferedByteStream;
        void Flush() override {}
    };
    source.data = "abc";
    LazyInput in(source, 2, 1);
    EXPECT_THROW(in.Get(), eof_error);
    EXPECT_THROW(in.ReadBlock(block, 1), eof_error);

    LazyOutput out(sink, 1, 1);
    out.Put('a');
    EXPECT_THROW(out.Put('b'), byte_stream_exception);
    EXPECT_THROW(out.WriteBlock(block, 1), byte_stream_exception);
    EXPECT_THROW(out.CurPos(9), byte_stream_exception);
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
    }
    EXPECT_EQ(sink.transfers, (std::vector<Transfer>{{0, 10}, {3, 2}, {6, 1}, {7, 17}, {24, 1}}));
}

TEST_F(BufferedByteStreams, WriteLikeMemoryWhateverFailsOnTheWay) {
    for (std::uint32_t const bufferSize : {0u, 2u, 7u, 32u, 1000u}) {
        for (int const failsEvery : {0, 3, 4, 7}) {
            sink.data.clear();
            sink.failsEvery = failsEvery;
            std::string model;
            std::size_t position = 0;
            OBufferedByteStream stream(sink, bufferSize, 4);
            for (int i = 0; i < 1000; ++i) {
                auto const action = Below(8);
                auto const count = action == 1 ? Below(50) : 1;
                auto const target = action == 0 ? Below(200) : position + count;
                // What failed has changed nothing, so it may be done again.
                for (bool done = false; !done;) {
                    ASSERT_EQ(stream.CurPos(), position);
                    try {
                        if (action == 0) {
                            stream.CurPos(target);
                        } else if (action == 1) {
                            stream.WriteBlock(Bytes(data) + count, count);
                        } else {
                            stream.Put(Bytes(data)[count]);
                        }
                        done = true;
                    } catch (io_error const&) {
                    }
                }
                if (action != 0 && count != 0) {
                    model.resize(std::max(model.size(), target));
                    model.replace(position, count, data, count, count);
                }
                position = target;
            }
            sink.failsEvery = 0;
            stream.Flush();
            ASSERT_EQ(sink.data, model) << bufferSize << ' ' << failsEvery;
            sink.failsEvery = 1;
            stream.Put('x'); // the destructor drops the failure
        }
    }
}

} // namespace
} // namespace brindle::filesupport
