#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/DequeByteStream.h>
#include <brindle/filesupport/StdByteStream.h>
#include <brindle/filesupport/StringByteStream.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>

namespace brindle::filesupport {
namespace {

constexpr auto kFar = std::numeric_limits<std::uint64_t>::max();

std::uint8_t const kData[] = {'a', 'b', 'c', 'd', 'e'};

TEST(InputStreams, DeliverBytesBlocksAndPositions) {
    std::deque<std::uint8_t> bytes(kData, kData + sizeof kData);
    std::string text(kData, kData + sizeof kData);
    std::istringstream stream(text);
    std::unique_ptr<IByteStream> const streams[] = {
        std::make_unique<IBufferByteStream>(kData, sizeof kData),
        std::make_unique<IDequeByteStream>(bytes), std::make_unique<IStringByteStream>(text),
        std::make_unique<IStdByteStream>(stream)};
    for (auto const& in : streams) {
        std::uint8_t block[] = "xxxx";
        EXPECT_EQ(in->Get(), 'a');
        in->ReadBlock(block, 2);
        EXPECT_EQ(in->Length(), 5u);
        EXPECT_EQ(in->CurPos(), 3u);
        in->CurPos(2);
        EXPECT_EQ(in->Get(), 'c');
        // A block past the end delivers the bytes before the end.
        EXPECT_THROW(in->ReadBlock(block + 1, 3), eof_error);
        EXPECT_EQ(std::string(block, block + 4), "bdex");
        EXPECT_THROW(in->Get(), eof_error);
        EXPECT_NO_THROW(in->ReadBlock(block, 0));
    }
}

TEST(BufferStreams, CheckPositionsAtTheNextByteAndCountTheUsedBytes) {
    std::uint8_t store[4] = {};
    OBufferByteStream out(store, sizeof store);
    EXPECT_EQ(out.Length(), 4u);
    out.CurPos(3);
    EXPECT_EQ(out.Count(), 3u);
    out.CurPos(1);
    out.Put('x');
    EXPECT_EQ(out.Count(), 3u);
    EXPECT_THROW(out.WriteBlock(kData, 3), eof_error);
    EXPECT_EQ(out.Count(), 4u);
    EXPECT_EQ(std::string(store, store + 4), std::string("\0xab", 4));

    IBufferByteStream in(kData, sizeof kData);
    for (std::uint64_t const position : {std::uint64_t{5}, kFar - 1, kFar}) {
        in.CurPos(position);
        EXPECT_THROW(in.Get(), eof_error);
        EXPECT_THROW(in.ReadBlock(store, 3), eof_error);
        out.CurPos(position);
        EXPECT_THROW(out.Put(1), eof_error);
        EXPECT_THROW(out.WriteBlock(kData, 3), eof_error);
        EXPECT_EQ(out.Count(), position);
    }
    EXPECT_THROW(IBufferByteStream(nullptr, 0).Get(), eof_error);
}

template <typename IStream, typename OStream, typename Container>
void AppendAndFollowTheSize(Container ioContainer) {
    OStream out(ioContainer);
    out.CurPos(0);
    EXPECT_EQ(out.CurPos(), 2u);
    out.Put('y');
    out.WriteBlock(kData, 3);
    EXPECT_EQ(std::string(ioContainer.begin(), ioContainer.end()), "xxyabc");

    IStream in(ioContainer);
    in.CurPos(6);
    EXPECT_THROW(in.CurPos(7), eof_error);
    ioContainer.resize(2);
    std::uint8_t block[4];
    EXPECT_THROW(in.Get(), eof_error);
    EXPECT_THROW(in.ReadBlock(block, 4), eof_error);
    ioContainer.resize(7, 'z');
    EXPECT_EQ(in.Get(), 'z');
}

TEST(ContainerStreams, AppendAndFollowTheSize) {
    AppendAndFollowTheSize<IDequeByteStream, ODequeByteStream>(std::deque<std::uint8_t>(2, 'x'));
    AppendAndFollowTheSize<IStringByteStream, OStringByteStream>(std::string(2, 'x'));
}

/// Like a pipe: the base class refuses to seek.
struct Pipe : std::streambuf {
    explicit Pipe(std::string& inText) {
        setg(inText.data(), inText.data(), inText.data() + inText.size());
    }
};

TEST(StandardStreams, CopyWithoutALengthAndWriteAtTheirPosition) {
    std::string text = "ab\xFF", copy;
    Pipe pipe(text);
    std::istream standard(&pipe);
    IStdByteStream in(standard);
    EXPECT_EQ(in.CurPos(), kFar);
    OStringByteStream sink(copy);
    sink << in;
    EXPECT_EQ(copy, text);

    std::ostringstream target;
    OStdByteStream out(target);
    out.WriteBlock(kData, 5);
    out.CurPos(1);
    out.Put(0xFF);
    EXPECT_EQ(out.CurPos(), 2u);
    EXPECT_EQ(target.str(), "a\377cde");
}

} // namespace
} // namespace brindle::filesupport
