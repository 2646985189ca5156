#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CRCByteStream.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/RLEByteStream.h>
#include <brindle/filesupport/StringByteStream.h>

#include "filesupport/src/CRC32.h"
#include "tests/BitwiseCRC.h"
#include "tests/filesupport/RecordingStreams.h"

#include <gtest/gtest.h>

#include <random>

namespace brindle::filesupport {
namespace {

using namespace std::string_literals;
using tests::BitwiseCRC;

TEST(OCountingByteStream, CountsTheFurthestByteWritten) {
    OCountingByteStream stream;
    stream.WriteBlock(Bytes("12345"), 5);
    stream.CurPos(2);
    stream.Put('x');
    EXPECT_EQ(stream.Count(), 5u);
    EXPECT_EQ(stream.CurPos(), 3u);
    stream.CurPos(100);
    stream.WriteBlock(nullptr, 0);
    EXPECT_EQ(stream.Count(), 5u);
    stream.Put('x');
    EXPECT_EQ(stream.Count(), 101u);
}

TEST(OCRCByteStream, SumsEveryLengthAtEveryAlignmentInPieces) {
    std::mt19937 random(7);
    std::vector<std::uint8_t> data(1200);
    std::generate(data.begin(), data.end(), [&] { return static_cast<std::uint8_t>(random()); });
    OCountingByteStream sink;
    for (std::size_t start = 0; start < 16; ++start) {
        auto const bytes = &data[start];
        for (std::uint32_t size = 0; size <= 300; ++size) {
            OCRCByteStream stream(sink);
            stream.WriteBlock(bytes, size);
            ASSERT_EQ(stream.Value(), BitwiseCRC(bytes, size)) << start << ' ' << size;
            ASSERT_EQ(~UpdateCRC32Portable(0xFFFFFFFF, bytes, size), stream.Value());
            stream.Put(bytes[size]);
            stream.WriteBlock(bytes + size + 1, 700);
            ASSERT_EQ(stream.Value(), BitwiseCRC(bytes, size + 701));
        }
    }
}

TEST(OCRCByteStream, HandsEveryCallOn) {
    RecordingSink sink;
    OCRCByteStream stream(sink);
    stream.WriteBlock(Bytes("12345"), 5);
    stream.CurPos(7);
    stream.Put('6');
    EXPECT_EQ(stream.CurPos(), 8u);
    stream.WriteBlock(Bytes("789"), 3);
    EXPECT_EQ(stream.Value(), 0xCBF43926u);
    EXPECT_EQ(sink.transfers, (std::vector<Transfer>{{0, 5}, {7, 1}, {8, 3}}));
    EXPECT_EQ(sink.data.substr(7), "6789");
}

/// Encoded by `Put`, or by `WriteBlock` if blocks are longer than a byte.
std::string Encoded(std::string const& inData, std::size_t inBlock = 1) {
    std::string packed;
    OStringByteStream sink(packed);
    ORLEByteStream stream(sink);
    for (std::size_t i = 0; i < inData.size(); i += inBlock) {
        auto const next = Bytes(inData) + i;
        if (inBlock == 1) {
            stream.Put(*next);
        } else {
            auto const count = std::min(inBlock, inData.size() - i);
            stream.WriteBlock(next, static_cast<std::uint32_t>(count));
        }
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

/// The packets of a whole text: a run from two on at the start of a packet, from three on in
/// literals, neither longer than 128.
std::string EncodedByRuns(std::string const& inData) {
    std::string packed;
    for (std::size_t i = 0, end = 0; i < inData.size(); i = end) {
        auto const limit = std::min(inData.size(), i + 128);
        end = std::min(limit, inData.find_first_not_of(inData[i], i));
        if (end - i > 1) {
            packed += {static_cast<char>(257 - (end - i)), inData[i]};
            continue;
        }
        while (end < limit && (end + 2 >= limit || inData[end] != inData[end + 1] ||
                               inData[end] != inData[end + 2])) {
            ++end;
        }
        packed += static_cast<char>(end - i - 1);
        packed.append(inData, i, end - i);
    }
    return packed;
}

TEST(RunLength, PacksAsTold) {
    std::string distinct;
    for (int i = 0; i < 128; ++i) {
        distinct += static_cast<char>(i * 5);
    }
    std::pair<std::string, std::string> const cases[] = {
        {"aab", "\377a\0b"s},
        {"abccc", "\1ab\376c"s},
        {"abcc", "\3abcc"s},
        {"abbb", "\0a\376b"s},
        {std::string(128, 'x'), "\x81x"s},
        {std::string(129, 'x'), "\x81x\0x"s},
        {distinct, "\x7F" + distinct},
        {distinct + "\x7B\x7B", "\x7F" + distinct + "\xFF\x7B"},
    };
    for (auto const& [data, packed] : cases) {
        EXPECT_EQ(Encoded(data), packed) << data;
        EXPECT_EQ(Decoded(packed), data);
    }
    EXPECT_EQ(Decoded("\x80\x80\0x\x80"s), "x");
}

/// Runs and stretches of the lengths at which the coding decides.
std::string Structured(std::mt19937& inRandom) {
    std::string data;
    for (auto pieces = inRandom() % 12; pieces != 0; --pieces) {
        std::size_t const lengths[] = {1, 2, 3, 4, 7, 8, 9, 120, 125 + inRandom() % 6, 300};
        auto const length = lengths[inRandom() % 10];
        auto const letters = std::uint32_t{1} << (inRandom() % 3 * 3);
        for (std::size_t i = 0; i < length; ++i) {
            data += static_cast<char>(inRandom() % letters);
        }
    }
    return data;
}

TEST(RunLength, DecodesWhatItEncodedInAnyBlocksAndEndsInEofWhereverItIsCut) {
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        auto const data = Structured(random);
        auto const packed = Encoded(data);
        ASSERT_EQ(packed, EncodedByRuns(data));
        for (unsigned const block : {2u, 9u, 33u, 100000u}) {
            ASSERT_EQ(Encoded(data, block), packed) << block;
        }
        ASSERT_EQ(Decoded(packed), data);

        auto const cut = Decoded(packed.substr(0, random() % (packed.size() + 1)));
        ASSERT_EQ(cut, data.substr(0, cut.size()));
        IBufferByteStream source(Bytes(packed), packed.size());
        IRLEByteStream stream(source);
        std::uint8_t block[4000] = {};
        for (std::size_t done = 0, next = 0; done < data.size(); done = next) {
            next = std::min(data.size(), done + 1 + random() % 200);
            stream.ReadBlock(block + done, static_cast<std::uint32_t>(next - done));
        }
        ASSERT_EQ(std::string(block, block + data.size()), data);
        ASSERT_THROW(stream.ReadBlock(block, 1), eof_error);
    }
}

TEST(RunLength, HasNoPositions) {
    RecordingSource source;
    IRLEByteStream in(source);
    EXPECT_THROW(in.CurPos(0), byte_stream_exception);
    EXPECT_THROW(in.CurPos(), byte_stream_exception);
    RecordingSink sink;
    ORLEByteStream out(sink);
    EXPECT_THROW(out.CurPos(0), byte_stream_exception);
    EXPECT_THROW(out.CurPos(), byte_stream_exception);
}

TEST(RunLength, ARefusedByteIsNotTakenAndWhatWaitsKeepsWaiting) {
    auto const big = std::string(300, 'x') + "abcabcabc";
    for (std::string const& data : {"abccccde"s, big, big.substr(300) + big}) {
        RecordingSink sink;
        ORLEByteStream stream(sink);
        for (std::size_t i = 0; i < data.size(); ++i) {
            sink.failsEvery = 1;
            try {
                stream.Put(Bytes(data)[i]);
            } catch (io_error const&) {
                EXPECT_THROW(stream.WriteBlock(Bytes(data) + i, 1), io_error);
                sink.failsEvery = 0;
                stream.Put(Bytes(data)[i]);
            }
        }
        sink.failsEvery = 0;
        stream.Flush();
        EXPECT_EQ(sink.data, EncodedByRuns(data));
    }
}

} // namespace
} // namespace brindle::filesupport
