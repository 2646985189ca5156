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

#include <algorithm>
#include <limits>
#include <random>

namespace brindle::filesupport {
namespace {

using namespace std::string_literals;
using tests::BitwiseCRC;

TEST(OCountingByteStream, CountsTheFurthestByteWritten) {
    constexpr auto kFar = std::numeric_limits<std::uint64_t>::max();
    OCountingByteStream stream;
    stream.WriteBlock(Bytes("12345"), 5);
    stream.CurPos(2);
    stream.Put('x');
    EXPECT_EQ(stream.Count(), 5u);
    EXPECT_EQ(stream.CurPos(), 3u);
    stream.CurPos(100);
    stream.WriteBlock(nullptr, 0);
    EXPECT_EQ(stream.Count(), 5u);

    // Blocks count as their bytes do, up to the end of all positions and round it.
    for (std::uint64_t const start : {kFar - 3, kFar - 2, kFar - 1, kFar}) {
        OCountingByteStream single, block;
        single.CurPos(start);
        block.CurPos(start);
        for (int i = 0; i < 3; ++i) {
            single.Put('x');
        }
        block.WriteBlock(Bytes("xxx"), 3);
        EXPECT_EQ(block.Count(), single.Count());
        EXPECT_EQ(block.CurPos(), single.CurPos());
    }
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
    EXPECT_EQ(stream.Value(), 0u);
    stream.WriteBlock(Bytes("12345"), 5);
    stream.CurPos(7);
    stream.Put('6');
    EXPECT_EQ(stream.CurPos(), 8u);
    stream.WriteBlock(Bytes("789"), 3);
    EXPECT_EQ(stream.Value(), 0xCBF43926u);
    EXPECT_EQ(sink.transfers, (std::vector<Transfer>{{0, 5}, {7, 1}, {8, 3}}));
    EXPECT_EQ(sink.data, "12345\0\0"
                         "6789"s);
}

std::string Encoded(std::string const& inData, std::size_t inBlock = 1) {
    std::string packed;
    OStringByteStream sink(packed);
    ORLEByteStream stream(sink);
    for (std::size_t i = 0; i < inData.size(); i += inBlock) {
        auto const block = inData.substr(i, inBlock);
        if (inBlock == 1) {
            stream.Put(*Bytes(block));
        } else {
            stream.WriteBlock(Bytes(block), static_cast<std::uint32_t>(block.size()));
        }
    }
    stream.Flush();
    stream.Flush();
    return packed;
}

std::string Decoded(std::string inPacked) {
    IStringByteStream source(inPacked);
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
    for (std::size_t i = 0; i < inData.size();) {
        std::size_t end = i + 1;
        auto const limit = std::min(inData.size(), i + 128);
        while (end < limit && inData[end] == inData[i]) {
            ++end;
        }
        if (end - i > 1) {
            packed += static_cast<char>(257 - (end - i));
            packed += inData[i];
        } else {
            auto const triple = [&](std::size_t inAt) {
                return inAt + 2 < limit && inData[inAt] == inData[inAt + 1] &&
                       inData[inAt] == inData[inAt + 2];
            };
            while (end < limit && !triple(end)) {
                ++end;
            }
            packed += static_cast<char>(end - i - 1);
            packed.append(inData, i, end - i);
        }
        i = end;
    }
    return packed;
}

TEST(RunLength, PacksAsTold) {
    std::string distinct;
    for (int i = 0; i < 128; ++i) {
        distinct += static_cast<char>(i * 5);
    }
    struct {
        std::string data, packed;
    } const cases[] = {
        {"aab", "\xFF"
                "a\0b"s},
        {"abccc", "\1ab\xFE"
                  "c"s},
        {"abcc", "\3abcc"s},
        {"abbb", "\0a\xFE"
                 "b"s},
        {std::string(128, 'x'), "\x81x"s},
        {std::string(129, 'x'), "\x81x\0x"s},
        {distinct, "\x7F" + distinct},
        {distinct + "\x7B\x7B", "\x7F" + distinct + "\xFF\x7B"},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(Encoded(c.data), c.packed) << c.data;
        EXPECT_EQ(Decoded(c.packed), c.data);
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

TEST(RunLength, DecodesWhatItEncodedInAnyBlocks) {
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        auto const data = Structured(random);
        auto const packed = Encoded(data);
        ASSERT_EQ(packed, EncodedByRuns(data));
        for (unsigned const block : {2u, 9u, 33u, 100000u}) {
            ASSERT_EQ(Encoded(data, block), packed) << block;
        }
        ASSERT_EQ(Decoded(packed), data);

        IBufferByteStream source(Bytes(packed), packed.size());
        IRLEByteStream stream(source);
        std::string unpacked;
        std::uint8_t block[200];
        while (unpacked.size() < data.size()) {
            auto const count =
                std::min<std::size_t>(1 + random() % 200, data.size() - unpacked.size());
            stream.ReadBlock(block, static_cast<std::uint32_t>(count));
            unpacked.append(block, block + count);
        }
        ASSERT_EQ(unpacked, data);
        ASSERT_THROW(stream.Get(), eof_error);
    }
}

TEST(RunLength, StreamsCutAnywhereEndInEof) {
    auto const data = "aaab"s + std::string(200, 'c') + "defghhij";
    auto const packed = Encoded(data);
    for (std::size_t cut = 0; cut < packed.size(); ++cut) {
        IBufferByteStream source(Bytes(packed), cut);
        IRLEByteStream stream(source);
        auto const got = Decoded(packed.substr(0, cut));
        EXPECT_LT(got.size(), data.size());
        std::vector<std::uint8_t> block(data.size());
        EXPECT_THROW(stream.ReadBlock(block.data(), static_cast<std::uint32_t>(block.size())),
                     eof_error);
        EXPECT_THROW(stream.Get(), eof_error);
        EXPECT_EQ(std::string(block.begin(), block.begin() + static_cast<int>(got.size())), got);
        EXPECT_EQ(data.substr(0, got.size()), got);
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

TEST(RunLength, WhatTheSinkRefusesWaitsAndNothingOverruns) {
    for (std::string const data : {"abc", "x"}) {
        RecordingSink sink;
        ORLEByteStream stream(sink);
        std::string all;
        sink.failsEvery = 1;
        for (std::size_t i = 0; i < 300; ++i) {
            all += data[i % data.size()];
            if (i < 127) {
                stream.Put(Bytes(all)[i]);
            } else if (i % 2 == 0) {
                EXPECT_THROW(stream.Put(Bytes(all)[i]), io_error);
            } else {
                EXPECT_THROW(stream.WriteBlock(Bytes(all) + i, 1), io_error);
            }
        }
        sink.failsEvery = 0;
        stream.Flush();
        EXPECT_EQ(Decoded(sink.data), all.substr(0, 128));
    }

    // The end of a run goes out before the byte behind it is taken.
    RecordingSink sink;
    ORLEByteStream stream(sink);
    stream.WriteBlock(Bytes("abcc"), 4);
    sink.failsEvery = 1;
    EXPECT_THROW(stream.Put('c'), io_error);
    sink.failsEvery = 0;
    stream.WriteBlock(Bytes("ccd"), 3);
    stream.Flush();
    EXPECT_EQ(Decoded(sink.data), "abccccd");
}

} // namespace
} // namespace brindle::filesupport
