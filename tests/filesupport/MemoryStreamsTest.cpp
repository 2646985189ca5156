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

TEST(InputStreams, DeliverBytesBlocksAndPositions) {
    IBufferByteStream buffer(kData, sizeof kData);
    std::deque<std::uint8_t> deque(kData, kData + sizeof kData);
    IDequeByteStream dequeStream(deque);
    std::string string(kData, kData + sizeof kData);
    IStringByteStream stringStream(string);
    std::istringstream standard(string);
    IStdByteStream stdStream(standard);
    for (IByteStream* const stream :
         std::initializer_list<IByteStream*>{&buffer, &dequeStream, &stringStream, &stdStream}) {
        std::uint8_t block[4] = {};
        EXPECT_EQ(stream->Get(), 'a');
        stream->ReadBlock(block, 2);
        EXPECT_EQ(block[1], 'c');
        EXPECT_EQ(stream->Length(), 5u);
        EXPECT_EQ(stream->CurPos(), 3u);
        stream->CurPos(2);
        EXPECT_EQ(stream->Get(), 'c');

        // A block that the end cuts short delivers what there is.
        block[2] = 'x';
        EXPECT_THROW(stream->ReadBlock(block, 4), eof_error);
        EXPECT_EQ(std::string(block, block + 3), "dex");
        EXPECT_THROW(stream->Get(), eof_error);
        EXPECT_NO_THROW(stream->ReadBlock(block, 0));
    }
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

template <typename IStream, typename OStream, typename Container>
void AppendAndCheckPositionsAgainstThePresentSize() {
    Container container(2, 'x');
    OStream out(container);
    out.CurPos(0);
    EXPECT_EQ(out.CurPos(), 2u);
    out.Put('y');
    out.WriteBlock(kData, 3);
    out.WriteBlock(nullptr, 0);
    EXPECT_EQ(out.CurPos(), 6u);
    EXPECT_EQ(std::string(container.begin(), container.end()), "xxyabc");

    IStream in(container);
    in.CurPos(6);
    EXPECT_THROW(in.CurPos(7), eof_error);
    EXPECT_THROW(in.CurPos(kFar), eof_error);
    EXPECT_EQ(in.CurPos(), 6u);
    container.resize(2);
    std::uint8_t block[4];
    EXPECT_EQ(in.Length(), 2u);
    EXPECT_THROW(in.Get(), eof_error);
    EXPECT_THROW(in.ReadBlock(block, 4), eof_error);
    container.resize(7, 'z');
    EXPECT_EQ(in.Get(), 'z');
}

TEST(ContainerStreams, AppendAndCheckPositionsAgainstThePresentSize) {
    AppendAndCheckPositionsAgainstThePresentSize<IDequeByteStream, ODequeByteStream,
                                                 std::deque<std::uint8_t>>();
    AppendAndCheckPositionsAgainstThePresentSize<IStringByteStream, OStringByteStream,
                                                 std::string>();
}

/// Bytes that come once, as from a pipe: the base refuses to seek.
class Pipe : public std::streambuf {
public:
    explicit Pipe(std::string& ioText) {
        setg(ioText.data(), ioText.data(), ioText.data() + ioText.size());
    }
};

TEST(StandardStreams, CopyEndsQuietlyWhereTheLengthIsUnknown) {
    for (std::string text : {"", "ab\xFF"}) {
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
    EXPECT_EQ(standard.str(), "a\377cde");
    stream.CurPos(kFar);
    EXPECT_EQ(stream.CurPos(), kFar);
}

} // namespace
} // namespace brindle::filesupport
