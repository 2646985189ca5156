#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/DequeByteStream.h>
#include <brindle/filesupport/StdByteStream.h>
#include <brindle/filesupport/StringByteStream.h>

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

namespace brindle::filesupport {
namespace {

constexpr auto kFar = std::numeric_limits<std::uint64_t>::max();

std::uint8_t const kData[] = {'a', 'b', 'c', 'd', 'e'};

/// What every input stream over "abcde" does.
void ReadsTheFiveBytes(IByteStream& inStream) {
    EXPECT_EQ(inStream.Length(), 5u);
    EXPECT_EQ(inStream.Get(), 'a');
    std::uint8_t block[8] = {};
    inStream.ReadBlock(block, 2);
    EXPECT_EQ(block[0], 'b');
    EXPECT_EQ(block[1], 'c');
    EXPECT_EQ(inStream.CurPos(), 3u);
    EXPECT_EQ(inStream.Length(), 5u);

    inStream.CurPos(1);
    EXPECT_EQ(inStream.CurPos(), 1u);
    EXPECT_EQ(inStream.Get(), 'b');
    EXPECT_EQ(inStream.Get(), 'c');

    // A block that the end cuts short delivers what there is.
    block[2] = 'x';
    EXPECT_THROW(inStream.ReadBlock(block, 5), eof_error);
    EXPECT_EQ(std::string(block, block + 3), "dex");
    EXPECT_THROW(inStream.Get(), eof_error);
    EXPECT_NO_THROW(inStream.ReadBlock(block, 0));
}

TEST(InputStreams, DeliverBytesBlocksAndPositions) {
    IBufferByteStream buffer(kData, sizeof kData);
    ReadsTheFiveBytes(buffer);
    std::deque<std::uint8_t> deque(kData, kData + sizeof kData);
    IDequeByteStream dequeStream(deque);
    ReadsTheFiveBytes(dequeStream);
    std::string string(kData, kData + sizeof kData);
    IStringByteStream stringStream(string);
    ReadsTheFiveBytes(stringStream);
    std::istringstream standard(string);
    IStdByteStream stdStream(standard);
    ReadsTheFiveBytes(stdStream);
}

TEST(BufferStreams, TakeAnyPositionAndRefuseAtTheNextByte) {
    EXPECT_THROW(IBufferByteStream(nullptr, 0).Get(), eof_error);
    IBufferByteStream in(kData, sizeof kData);
    std::uint8_t store[4] = {};
    OBufferByteStream out(store, sizeof store);
    for (std::uint64_t const position : {std::uint64_t{5}, kFar / 2 + 1, kFar - 1, kFar}) {
        in.CurPos(position);
        EXPECT_THROW(in.Get(), eof_error);
        EXPECT_THROW(in.ReadBlock(store, 3), eof_error);
        EXPECT_EQ(in.CurPos(), position);
        out.CurPos(position);
        EXPECT_THROW(out.Put(1), eof_error);
        EXPECT_THROW(out.WriteBlock(kData, 3), eof_error);
        EXPECT_EQ(out.CurPos(), position);
        EXPECT_EQ(out.Count(), position);
    }
}

TEST(BufferStreams, CountHowFarTheBufferIsUsed) {
    std::uint8_t store[4] = {};
    OBufferByteStream stream(store, sizeof store);
    EXPECT_EQ(stream.Length(), 4u);
    stream.CurPos(3);
    EXPECT_EQ(stream.Count(), 3u);
    stream.CurPos(1);
    stream.Put('x');
    EXPECT_EQ(stream.Count(), 3u);
    EXPECT_THROW(stream.WriteBlock(kData, 3), eof_error);
    EXPECT_EQ(stream.Count(), 4u);
    EXPECT_EQ(std::string(store, store + 4), std::string("\0xab", 4));
}

template <typename Stream, typename Container>
void Appends() {
    Container target(2, 'x');
    Stream stream(target);
    EXPECT_EQ(stream.CurPos(), 2u);
    stream.CurPos(0);
    stream.Put('y');
    stream.WriteBlock(kData, 3);
    stream.WriteBlock(nullptr, 0);
    EXPECT_EQ(stream.CurPos(), 6u);
    EXPECT_EQ(std::string(target.begin(), target.end()), "xxyabc");
}

TEST(ContainerStreams, Append) {
    Appends<ODequeByteStream, std::deque<std::uint8_t>>();
    Appends<OStringByteStream, std::string>();
}

template <typename Stream, typename Container>
void ChecksPositionsAgainstThePresentSize() {
    Container container(5, 'x');
    Stream stream(container);
    stream.CurPos(5);
    EXPECT_THROW(stream.Get(), eof_error);
    EXPECT_THROW(stream.CurPos(6), eof_error);
    EXPECT_THROW(stream.CurPos(kFar), eof_error);
    EXPECT_EQ(stream.CurPos(), 5u);

    container.resize(2);
    std::uint8_t block[4];
    EXPECT_EQ(stream.Length(), 2u);
    EXPECT_THROW(stream.Get(), eof_error);
    EXPECT_THROW(stream.ReadBlock(block, 4), eof_error);
    container.resize(7, 'y');
    EXPECT_EQ(stream.Get(), 'y');
}

TEST(ContainerStreams, CheckPositionsAgainstThePresentSize) {
    ChecksPositionsAgainstThePresentSize<IDequeByteStream, std::deque<std::uint8_t>>();
    ChecksPositionsAgainstThePresentSize<IStringByteStream, std::string>();
}

/// Bytes that come once, as from a pipe.
class Pipe : public std::stringbuf {
public:
    using std::stringbuf::stringbuf;

protected:
    pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override {
        return pos_type(-1);
    }
    pos_type seekpos(pos_type, std::ios_base::openmode) override { return pos_type(-1); }
};

TEST(StandardStreams, CopyEndsQuietlyWhereTheLengthIsUnknown) {
    for (std::string const text : {"", "ab\xFF"}) {
        Pipe pipe(text);
        std::istream standard(&pipe);
        IStdByteStream in(standard);
        EXPECT_EQ(in.Length(), 0u);
        EXPECT_EQ(in.CurPos(), kFar);
        std::string copy;
        OStringByteStream out(copy);
        out << in;
        EXPECT_EQ(copy, text);
    }
}

TEST(StandardStreams, WriteAtThePositionSet) {
    std::ostringstream standard;
    OStdByteStream stream(standard);
    stream.WriteBlock(kData, 5);
    stream.CurPos(1);
    stream.Put(0xFF);
    EXPECT_EQ(stream.CurPos(), 2u);
    EXPECT_EQ(standard.str(), "a\xFF"
                              "cde");
    stream.CurPos(kFar);
    EXPECT_TRUE(standard.fail());
    EXPECT_EQ(stream.CurPos(), kFar);
}

} // namespace
} // namespace brindle::filesupport
