#include <brindle/filesupport/BufferedByteStream.h>

#include "tests/filesupport/RecordingStreams.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace brindle::filesupport {
namespace {

std::string SomeBytes(std::size_t inSize) {
    std::string bytes(inSize, 0);
    std::mt19937 random(7);
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random()); });
    return bytes;
}

std::uint8_t const* Bytes(std::string const& inText) {
    return reinterpret_cast<std::uint8_t const*>(inText.data());
}

/// Which part of the source must be read for the next request: ranges alone, without a buffer.
class RefillModel {
public:
    RefillModel(std::uint64_t inLength, std::uint64_t inBufferSize, std::uint64_t inBlockSize)
        : mLength(inLength), mBufferSize(inBufferSize), mBlockSize(inBlockSize) {}

    void Request(std::uint64_t inPosition, std::uint64_t inCount) {
        if (mStart <= inPosition && inPosition + inCount <= mEnd) {
            return;
        }
        auto start = inPosition / mBlockSize * mBlockSize;
        if (start > mBlockSize && start - mBlockSize + mBufferSize > inPosition + inCount) {
            start -= mBlockSize;
        }
        auto const end = std::min(mLength, start + mBufferSize);
        auto from = start;
        auto to = end;
        if (mStart <= start && start < mEnd) {
            from = mEnd;
        } else if (start < mStart && mStart <= end) {
            to = mStart;
        }
        reads.emplace_back(from, to - from);
        mStart = start;
        mEnd = end;
    }

    std::vector<Transfer> reads;

private:
    std::uint64_t mLength, mBufferSize, mBlockSize, mStart = 0, mEnd = 0;
};

class IBufferedAtSizes : public testing::TestWithParam<std::pair<std::uint32_t, std::uint32_t>> {};

TEST_P(IBufferedAtSizes, ReadsLikeMemoryAndAsksTheSourceForWhatItLacks) {
    auto const [bufferSize, blockSize] = GetParam();
    std::mt19937 random(bufferSize);
    for (std::size_t const length : {0u, 1u, 63u, 64u, 1000u}) {
        RecordingSource source(SomeBytes(length));
        IBufferedByteStream stream(source, bufferSize, blockSize);
        RefillModel model(length, bufferSize, blockSize);
        std::uint64_t position = 0;
        std::uint8_t block[300];
        for (int i = 0; i < 3000; ++i) {
            auto const left = length - position;
            switch (random() % 4) {
            case 0:
                // Mostly near, in both directions.
                position =
                    random() % 3 == 0
                        ? random() % (length + 1)
                        : std::min<std::uint64_t>(
                              length, position - std::min<std::uint64_t>(position, random() % 40) +
                                          random() % 40);
                stream.CurPos(position);
                break;
            case 1: {
                auto const count =
                    static_cast<std::uint32_t>(std::min<std::uint64_t>(left, random() % 200));
                if (count == 0) {
                    break;
                }
                if (count <= bufferSize - blockSize) {
                    model.Request(position, count);
                } else {
                    model.reads.emplace_back(position, count);
                }
                stream.ReadBlock(block, count);
                ASSERT_TRUE(std::equal(block, block + count, Bytes(source.data) + position));
                position += count;
                break;
            }
            default:
                if (left == 0) {
                    ASSERT_THROW(stream.Get(), eof_error);
                } else {
                    model.Request(position, 1);
                    ASSERT_EQ(stream.Get(), Bytes(source.data)[position]);
                    ++position;
                }
            }
            ASSERT_EQ(stream.CurPos(), position);
            ASSERT_EQ(source.reads, model.reads);
        }
        EXPECT_EQ(stream.Length(), length);
    }
}

INSTANTIATE_TEST_SUITE_P(, IBufferedAtSizes,
                         testing::Values(std::pair(2u, 1u), std::pair(16u, 8u), std::pair(64u, 8u),
                                         std::pair(100u, 7u), std::pair(256u, 128u)));

TEST(IBufferedByteStream, SurvivesAFailingSource) {
    for (int every = 2; every < 8; ++every) {
        RecordingSource source(SomeBytes(500));
        IBufferedByteStream stream(source, 32, 8);
        source.failsEvery = every;
        std::mt19937 random(7);
        int failures = 0;
        for (int i = 0; i < 5000; ++i) {
            auto const position = random() % 480;
            stream.CurPos(position);
            std::uint8_t block[20];
            try {
                stream.ReadBlock(block, sizeof block);
                ASSERT_TRUE(std::equal(block, block + 20, Bytes(source.data) + position));
            } catch (io_error const&) {
                ++failures;
                ASSERT_EQ(stream.CurPos(), position);
            }
        }
        EXPECT_GT(failures, 100);
    }
}

TEST(IBufferedByteStream, RefusesWhatLiesPastTheEnd) {
    constexpr auto kFar = std::numeric_limits<std::uint64_t>::max();
    RecordingSource source("abcdefghij");
    IBufferedByteStream stream(source, 8, 4);
    stream.CurPos(10);
    EXPECT_THROW(stream.Get(), eof_error);
    EXPECT_THROW(stream.CurPos(11), eof_error);
    EXPECT_THROW(stream.CurPos(kFar), eof_error);
    EXPECT_EQ(stream.CurPos(), 10u);

    std::uint8_t block[20] = {};
    stream.CurPos(8);
    EXPECT_THROW(stream.ReadBlock(block, 4), eof_error);
    EXPECT_EQ(block[1], 'j');
    EXPECT_EQ(stream.CurPos(), 10u);
    stream.CurPos(1);
    EXPECT_THROW(stream.ReadBlock(block, 20), eof_error);
    EXPECT_EQ(stream.CurPos(), 1u);

    EXPECT_THROW(stream.FillBuffer(kFar, 1), eof_error);
    EXPECT_THROW(stream.FillBuffer(kFar, 0xFFFFFFFF), eof_error);
    EXPECT_THROW(stream.FillBuffer(11, 0), eof_error);
    EXPECT_THROW(stream.FillBuffer(5, 6), eof_error);
    stream.FillBuffer(0, 10);
    stream.FillBuffer(9, 1);
    EXPECT_EQ(stream.Get(), 'b');

    // The source has shrunk since.
    source.data = "abc";
    stream.CurPos(0);
    EXPECT_EQ(stream.Get(), 'a');
    stream.CurPos(9);
    EXPECT_THROW(stream.ReadBlock(block, 1), eof_error);
    EXPECT_EQ(stream.Length(), 3u);
}

TEST(IBufferedByteStream, BringsSizesIntoRange) {
    std::pair<std::uint32_t, std::uint32_t> const sizes[] = {
        {0, 0}, {1, 1}, {7, 0}, {7, 7}, {16, 0xFFFFFFFF}};
    for (auto const& [bufferSize, blockSize] : sizes) {
        RecordingSource source(SomeBytes(50));
        IBufferedByteStream stream(source, bufferSize, blockSize);
        for (std::size_t i = 0; i < 50; ++i) {
            stream.CurPos(i * 7 % 50);
            ASSERT_EQ(stream.Get(), Bytes(source.data)[i * 7 % 50]);
        }
    }
}

/// A client's idea of filling the buffer.
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

TEST(BufferedByteStreams, OverridesThatDoNothingCauseNoOverrun) {
    RecordingSource source("abc");
    LazyInput in(source, 2, 1);
    std::uint8_t block[2];
    EXPECT_THROW(in.Get(), eof_error);
    EXPECT_THROW(in.ReadBlock(block, 1), eof_error);

    RecordingSink sink;
    LazyOutput out(sink, 2, 1);
    out.Put('a');
    out.Put('b');
    EXPECT_THROW(out.Put('c'), byte_stream_exception);
    EXPECT_THROW(out.WriteBlock(Bytes("cc"), 2), byte_stream_exception);
    EXPECT_THROW(out.CurPos(9), byte_stream_exception);
    EXPECT_EQ(out.CurPos(), 2u);
}

TEST(OBufferedByteStream, RewritesWithinTheRangeAndSendsItAsOneBlock) {
    RecordingSink sink;
    OBufferedByteStream stream(sink, 16, 4);
    stream.WriteBlock(Bytes("0123456789"), 10);
    stream.CurPos(2);
    stream.Put('x');
    stream.Flush();
    stream.Flush();
    EXPECT_EQ(sink.data, "01x3456789");
    EXPECT_EQ(sink.writes, (std::vector<Transfer>{{0, 10}}));
    EXPECT_EQ(stream.CurPos(), 3u);

    // Right behind the range goes on in it; further off begins a new one; a large block goes by.
    sink.writes.clear();
    stream.Put('a');
    stream.CurPos(3);
    stream.CurPos(4);
    stream.Put('b');
    stream.CurPos(6);
    stream.Put('c');
    stream.WriteBlock(Bytes("0123456789abcdefg"), 17);
    stream.Put('d');
    EXPECT_EQ(sink.writes, (std::vector<Transfer>{{3, 2}, {6, 1}, {7, 17}}));
    EXPECT_EQ(stream.CurPos(), 25u);
}

TEST(OBufferedByteStream, WritesLikeMemoryWhateverFailsOnTheWay) {
    auto const data = SomeBytes(100);
    for (std::uint32_t const bufferSize : {0u, 1u, 2u, 7u, 32u, 1000u}) {
        for (int const every : {0, 3, 4, 7}) {
            RecordingSink sink;
            sink.failsEvery = every;
            std::string model;
            std::uint64_t position = 0;
            std::mt19937 random(bufferSize);
            {
                OBufferedByteStream stream(sink, bufferSize, 4);
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
                    auto const count = static_cast<std::uint32_t>(random() % 50);
                    switch (random() % 8) {
                    case 0:
                        untilDone([&] { stream.CurPos(count * 4); });
                        position = count * 4;
                        continue;
                    case 1:
                        untilDone([&] { stream.WriteBlock(Bytes(data) + count, count); });
                        break;
                    default:
                        untilDone([&] { stream.Put(Bytes(data)[count]); });
                        model.resize(std::max<std::size_t>(model.size(), position + 1));
                        model[position++] = data[count];
                        continue;
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

TEST(OBufferedByteStream, DestructorFlushes) {
    RecordingSink sink;
    { OBufferedByteStream(sink, 8, 1).Put('x'); }
    EXPECT_EQ(sink.data, "x");
}

} // namespace
} // namespace brindle::filesupport
