#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/BufferedByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/LimitedByteStream.h>
#include <brindle/filesupport/RLEByteStream.h>
#include <brindle/filesupport/StringByteStream.h>

#include "filesupport/src/streams/CRC32.h"
#include "tests/support/BitwiseCRC.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace brindle::filesupport {
namespace {

using namespace std::string_literals;

/// The position and size of one transfer of a block.
using Transfer = std::pair<std::uint64_t, std::uint64_t>;

/// A stream on memory that records every transfer and fails every n-th call if `failsEvery` is n.
struct RecordingStream : IByteStream, OByteStream {
    void CurPos(std::uint64_t inPosition) override {
        FailInTurn();
        position = inPosition;
    }
    std::uint64_t CurPos() const override { return position; }
    std::uint64_t Length() const override { return data.size(); }
    std::uint8_t Get() override { throw io_error(); }
    void Put(std::uint8_t inValue) override { WriteBlock(&inValue, 1); }
    void ReadBlock(std::uint8_t* outDestination, std::uint32_t inCount) override {
        FailInTurn();
        if (position + inCount > data.size()) {
            throw eof_error();
        }
        transfers.emplace_back(position, inCount);
        position += data.copy(reinterpret_cast<char*>(outDestination), inCount, position);
    }
    void WriteBlock(std::uint8_t const* inSource, std::uint32_t inCount) override {
        FailInTurn();
        transfers.emplace_back(position, inCount);
        data.resize(std::max<std::size_t>(data.size(), position + inCount));
        std::copy_n(inSource, inCount, &data[position]);
        position += inCount;
    }
    void FailInTurn() {
        if (failsEvery != 0 && ++calls % failsEvery == 0) {
            throw io_error();
        }
    }

    std::string data;
    std::vector<Transfer> transfers;
    std::uint64_t position = 0;
    int failsEvery = 0;
    int calls = 0;
};

using tests::Bytes;

/// 1000 irregular bytes.
std::string SomeBytes() {
    std::string bytes;
    for (std::uint32_t i = 0; i < 1000; ++i) {
        bytes += static_cast<char>(i * i * 2654435761u >> 24);
    }
    return bytes;
}

TEST(OCountingByteStream, CountsTheFurthestByteWritten) {
    OCountingByteStream stream;
    stream.WriteBlock(Bytes("12345"), 5);
    stream.CurPos(2);
    stream.Put('x');
    EXPECT_EQ(stream.CurPos(), 3u);
    stream.CurPos(100);
    stream.WriteBlock(nullptr, 0);
    EXPECT_EQ(stream.Count(), 5u);
    stream.Put('x');
    EXPECT_EQ(stream.Count(), 101u);
}

TEST(OCRCByteStream, SumsEveryLengthAtEveryAlignmentInPieces) {
    auto const data = SomeBytes();
    OCountingByteStream sink;
    for (std::size_t start = 0; start < 16; ++start) {
        auto const bytes = Bytes(data) + start;
        for (std::uint32_t size = 0; size <= 300; ++size) {
            OCRCByteStream stream(sink);
            stream.WriteBlock(bytes, size);
            ASSERT_EQ(stream.Value(), tests::BitwiseCRC(bytes, size)) << start << ' ' << size;
            ASSERT_EQ(stream.Value(), ~UpdateCRC32Portable(0xFFFFFFFF, bytes, size));
            stream.Put(bytes[size]);
            stream.WriteBlock(bytes + size + 1, 600);
            ASSERT_EQ(stream.Value(), tests::BitwiseCRC(bytes, size + 601));
        }
    }
}

TEST(ICRCByteStream, SumsWhatIsRead) {
    auto data = "0123456789"s;
    IStringByteStream source(data);
    ICRCByteStream stream(source);
    stream.CurPos(1);
    EXPECT_EQ(stream.Get(), '1');
    std::uint8_t block[8];
    stream.ReadBlock(block, 8);
    EXPECT_THROW(stream.Get(), eof_error);
    EXPECT_EQ(stream.Value(), 0xCBF43926u);
    EXPECT_EQ(stream.CurPos(), stream.Length());
}

TEST(ILimitedByteStream, EndsBehindItsPart) {
    auto data = "0123456789"s;
    IStringByteStream source(data);
    source.CurPos(2);
    ILimitedByteStream stream(source, 4);
    std::uint8_t block[4];
    EXPECT_THROW(stream.ReadBlock(block, 5), eof_error);
    stream.ReadBlock(block, 4);
    EXPECT_EQ(std::string(block, block + 4), "2345");
    EXPECT_THROW(stream.Get(), eof_error);
    EXPECT_THROW(stream.CurPos(5), eof_error);
    stream.CurPos(3);
    EXPECT_EQ(stream.Get(), '5');
    EXPECT_EQ(stream.CurPos(), stream.Length());
    ILimitedByteStream longer(source, ~std::uint64_t{0});
    OCountingByteStream() << longer;
    EXPECT_EQ(source.CurPos(), 10u) << "the source ends earlier";
}

TEST(OCRCByteStream, ForwardsEveryCall) {
    RecordingStream sink;
    OCRCByteStream stream(sink);
    stream.WriteBlock(Bytes("12345678"), 8);
    stream.CurPos(6);
    stream.Put('9');
    EXPECT_EQ(stream.CurPos(), 7u);
    EXPECT_EQ(stream.Value(), 0xCBF43926u);
    EXPECT_EQ(sink.data, "12345698");
}

/// Encodes block by block; a block of one byte is written by `Put`.
std::string Encoded(std::string const& inData, std::size_t inBlock = 1) {
    std::string packed;
    OStringByteStream sink(packed);
    ORLEByteStream stream(sink);
    for (std::size_t i = 0; i < inData.size(); i += inBlock) {
        auto const size = static_cast<std::uint32_t>(std::min(inBlock, inData.size() - i));
        auto const bytes = Bytes(inData) + i;
        size == 1 ? stream.Put(*bytes) : stream.WriteBlock(bytes, size);
    }
    stream.Flush();
    stream.Flush();
    return packed;
}

std::string Decoded(std::string const& inPacked) {
    IBufferByteStream source(Bytes(inPacked), inPacked.size());
    IRLEByteStream stream(source);
    std::string data;
    OStringByteStream sink(data);
    sink << stream;
    return data;
}

/// A model of the encoder: at the start of a packet two equal bytes begin a run, within literals
/// three do, and no packet covers more than 128 bytes.
std::string EncodedByRuns(std::string const& inData) {
    std::string packed;
    for (std::size_t i = 0, end = 0; i < inData.size(); i = end) {
        auto const limit = std::min(inData.size(), i + 128);
        end = std::min(limit, inData.find_first_not_of(inData[i], i));
        if (end - i > 1) {
            packed += {static_cast<char>(257 - (end - i)), inData[i]};
            continue;
        }
        while (end < limit &&
               (end + 2 >= limit || inData.substr(end, 3) != std::string(3, inData[end]))) {
            ++end;
        }
        packed += static_cast<char>(end - i - 1);
        packed.append(inData, i, end - i);
    }
    return packed;
}

TEST(RunLength, WritesTheDocumentedPackets) {
    std::pair<std::string, std::string> const cases[] = {
        {"aab", "\377a\0b"s},
        {"abccc", "\1ab\376c"s},
        {"abcc", "\3abcc"s},
        {std::string(129, 'x'), "\x81x\0x"s},
    };
    for (auto const& [data, packed] : cases) {
        EXPECT_EQ(Encoded(data), packed);
    }
    EXPECT_EQ(Decoded("\x80\x80\0x\x80"s), "x");
}

TEST(RunLength, DecodesWhatItEncodedAndTruncatedDataEndsInEof) {
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        // Runs and irregular stretches, with lengths around those that are encoded differently.
        std::string data;
        for (auto pieces = random() % 12; pieces != 0; --pieces) {
            auto const letters = std::uint32_t{1} << (random() % 3 * 3);
            auto const size = random() % 2 == 0 ? random() % 10 : 120 + random() % 16;
            for (std::uint32_t j = 0; j < size; ++j) {
                data += static_cast<char>(random() % letters);
            }
        }
        auto const packed = EncodedByRuns(data);
        for (unsigned const block : {1u, 2u, 9u, 33u, 100000u}) {
            ASSERT_EQ(Encoded(data, block), packed) << block;
        }
        ASSERT_EQ(Decoded(packed), data);
        auto const cutPacked = packed.substr(0, random() % (packed.size() + 1));
        auto const cut = Decoded(cutPacked);
        ASSERT_EQ(cut, data.substr(0, cut.size()));

        std::uint8_t block[2000];
        IBufferByteStream cutSource(Bytes(cutPacked), cutPacked.size());
        IRLEByteStream cutStream(cutSource);
        if (EncodedByRuns(cut) == cutPacked) { // it ends between packets
            ASSERT_EQ(cutStream.ReadUpTo(block, sizeof block), cut.size());
            ASSERT_TRUE(std::equal(block, block + cut.size(), Bytes(data)));
        } else {
            ASSERT_THROW(static_cast<void>(cutStream.ReadUpTo(block, sizeof block)), eof_error);
        }

        IBufferByteStream source(Bytes(packed), packed.size());
        IRLEByteStream stream(source);
        for (std::size_t done = 0, next = 0; done < data.size(); done = next) {
            next = std::min(data.size(), done + 1 + random() % 200);
            stream.ReadBlock(block + done, static_cast<std::uint32_t>(next - done));
        }
        ASSERT_TRUE(std::equal(block, block + data.size(), Bytes(data)));
        ASSERT_THROW(stream.ReadBlock(block, 1), eof_error);
    }
}

TEST(RunLength, AByteThatThrowsIsNotTakenAndPendingBytesStay) {
    auto const data = "abccccde" + std::string(300, 'x') + SomeBytes().substr(0, 300);
    RecordingStream sink;
    ORLEByteStream stream(sink);
    for (char const& byte : data) {
        sink.failsEvery = 1;
        try {
            stream.Put(static_cast<std::uint8_t>(byte));
        } catch (io_error const&) {
            sink.failsEvery = 0;
            stream.WriteBlock(reinterpret_cast<std::uint8_t const*>(&byte), 1);
        }
    }
    sink.failsEvery = 0;
    stream.Flush();
    EXPECT_EQ(sink.data, EncodedByRuns(data));
}

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
