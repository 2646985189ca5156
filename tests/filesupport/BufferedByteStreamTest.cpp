#include <brindle/filesupport/BufferedByteStream.h>

#include "tests/filesupport/RecordingStreams.h"

#include <gtest/gtest.h>

#include <random>

namespace brindle::filesupport {
namespace {

class BufferedByteStreams : public testing::Test {
protected:
    std::uint64_t Below(std::uint64_t inLimit) { return mRandom() % inLimit; }

    std::string const mData = SomeBytes();
    RecordingStream mSource, mSink;
    std::uint8_t mBlock[200] = {};
    std::mt19937 mRandom{7};
};

/// A model of the buffer without data: the ranges that each request reads from the source.
struct ReadModel {
    void Request(std::uint64_t inPosition, std::uint64_t inCount) {
        if (inCount > bufferSize - blockSize) {
            reads.emplace_back(inPosition, inCount);
            return;
        }
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

TEST_F(BufferedByteStreams, ReadLikeMemoryAndRequestOnlyMissingBytes) {
    // The requested buffer and block size, and the adjusted ones.
    std::uint32_t const sizes[][4] = {
        {64, 8, 64, 8}, {100, 7, 100, 7}, {0, 0, 2, 1}, {16, 0xFFFFFFFF, 16, 8}};
    for (auto const& [askedBuffer, askedBlock, bufferSize, blockSize] : sizes) {
        for (std::uint64_t const length : {0u, 1u, 63u, 64u, 1000u}) {
            for (int const failsEvery : {0, 3, 4}) {
                mSource.data = mData.substr(0, length);
                mSource.transfers.clear();
                mSource.failsEvery = failsEvery;
                IBufferedByteStream stream(mSource, askedBuffer, askedBlock);
                ReadModel model{length, bufferSize, blockSize};
                std::uint64_t position = 0;
                for (int i = 0; i < 1000; ++i) {
                    if (auto const move = Below(6); move == 0) {
                        position = Below(length + 1);
                    } else if (move == 1) { // a little back or forward
                        position -= std::min(position, Below(40));
                        position = std::min(length, position + Below(40));
                    }
                    stream.CurPos(position);
                    auto const count = std::min(i % 2 == 0 ? Below(200) : 1, length - position);
                    model.Request(position, count);
                    try {
                        if (count == 1) {
                            mBlock[0] = stream.Get();
                        } else {
                            stream.ReadBlock(mBlock, static_cast<std::uint32_t>(count));
                        }
                        ASSERT_TRUE(std::equal(mBlock, mBlock + count, Bytes(mData) + position));
                        position += count;
                    } catch (io_error const&) {
                        ASSERT_NE(failsEvery, 0);
                    }
                    ASSERT_EQ(stream.CurPos(), position);
                    if (failsEvery == 0) {
                        ASSERT_EQ(mSource.transfers, model.reads);
                    }
                }
            }
        }
    }
}

TEST_F(BufferedByteStreams, RefuseWhatLiesPastTheEnd) {
    mSource.data = "abcdefghij";
    IBufferedByteStream stream(mSource, 8, 4);
    stream.CurPos(10);
    EXPECT_THROW(stream.Get(), eof_error);
    EXPECT_THROW(stream.CurPos(11), eof_error);
    stream.CurPos(8);
    EXPECT_THROW(stream.ReadBlock(mBlock, 4), eof_error);
    EXPECT_EQ(mBlock[1], 'j');
    EXPECT_EQ(stream.CurPos(), 10u);
    EXPECT_THROW(stream.FillBuffer(~std::uint64_t{0}, 0xFFFFFFFF), eof_error);
    stream.FillBuffer(0, 10); // more than it can hold
    mSource.data = "abc";
    stream.CurPos(7);
    EXPECT_EQ(stream.Get(), 'h') << "from the buffer";
    EXPECT_THROW(stream.Get(), eof_error);
}

TEST_F(BufferedByteStreams, WriteOneBlockForEachRange) {
    {
        OBufferedByteStream stream(mSink, 16, 4);
        stream.WriteBlock(Bytes("0123456789"), 10);
        stream.CurPos(2);
        stream.Put('x');
        stream.CurPos(10); // directly behind the range, which continues
        stream.Put('b');
        stream.CurPos(13); // further away, where a new range begins
        stream.Put('c');
        stream.WriteBlock(Bytes(mData), 17); // larger than the buffer, so it bypasses it
    }
    EXPECT_EQ(mSink.transfers, (std::vector<Transfer>{{0, 11}, {13, 1}, {14, 17}}));
}

TEST_F(BufferedByteStreams, WriteLikeMemoryAlsoAfterFailures) {
    for (std::uint32_t const bufferSize : {0u, 2u, 7u, 32u, 1000u}) {
        for (int const failsEvery : {0, 3, 4}) {
            RecordingStream sink, model;
            sink.failsEvery = failsEvery;
            OBufferedByteStream stream(sink, bufferSize, 4);
            for (int i = 0; i < 1000; ++i) {
                auto const action = Below(8);
                auto const count = static_cast<std::uint32_t>(1 + Below(49));
                auto const run = [&](OByteStream& outStream) {
                    action == 0   ? outStream.CurPos(count * 4)
                    : action == 1 ? outStream.WriteBlock(Bytes(mData) + count, count)
                                  : outStream.Put(Bytes(mData)[i]);
                };
                // A failed operation has changed nothing, so it can be repeated.
                for (bool done = false; !done;) {
                    ASSERT_EQ(stream.CurPos(), model.CurPos());
                    try {
                        run(stream);
                        done = true;
                    } catch (io_error const&) {
                    }
                }
                run(model);
            }
            sink.failsEvery = 0;
            stream.Flush();
            ASSERT_EQ(sink.data, model.data) << bufferSize;
            sink.failsEvery = 1;
            stream.Put('x'); // the destructor cannot write it
        }
    }
}

} // namespace
} // namespace brindle::filesupport
