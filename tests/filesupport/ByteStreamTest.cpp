#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/DequeByteStream.h>
#include <brindle/filesupport/StdByteStream.h>
#include <brindle/filesupport/StringByteStream.h>
#include <brindle/filesupport/WireForm.h>

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace brindle::filesupport {
namespace {

using namespace std::string_literals;

template <typename Value>
std::string Wire(Value const& inValue) {
    std::string bytes;
    OStringByteStream stream(bytes);
    stream << inValue;
    return bytes;
}

template <typename Value>
Value Unwire(std::string inBytes, Value inTarget = Value{}) {
    IStringByteStream stream(inBytes);
    stream >> inTarget;
    EXPECT_EQ(stream.CurPos(), inBytes.size());
    return inTarget;
}

template <typename Value>
void ExpectWire(Value const& inValue, std::string const& inBytes) {
    EXPECT_EQ(Wire(inValue), inBytes);
    EXPECT_EQ(Unwire<Value>(inBytes), inValue);
    for (std::size_t size = 0; size < inBytes.size(); ++size) {
        EXPECT_THROW(Unwire<Value>(inBytes.substr(0, size)), eof_error);
    }
}

TEST(WireForm, IsFixedAndIndependentOfTheLocale) {
    struct Commas : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    auto const before = std::locale::global(std::locale(std::locale(), new Commas));
    ExpectWire(true, "\1"s);
    ExpectWire(false, "\0"s);
    ExpectWire('x', "x"s);
    auto const expectBigEndian = [](auto... inIntegers) {
        (ExpectWire(inIntegers, std::string(sizeof inIntegers - 1, '\xFF') + '\xFE'), ...);
    };
    expectBigEndian(std::int8_t{-2}, std::int16_t{-2}, std::int32_t{-2}, std::int64_t{-2},
                    std::uint8_t{0xFE}, std::uint16_t{0xFFFE}, ~std::uint32_t{1},
                    ~std::uint64_t{1});
    ExpectWire(std::uint64_t{0x0102030405060708}, "\1\2\3\4\5\6\7\x08"s);
    ExpectWire(""s, "\0\0"s);
    ExpectWire("a\0\xFF"s, "\0\3a\0\xFF"s);
    ExpectWire(u"\u0102\U0001F600"_utf16, "\0\3\1\2\xD8\x3D\xDE\0"s);
    ExpectWire(1234.5, "\0\0061234.5"s);
    ExpectWire(-0.1f, "\0\036-0.100000001490116119384765625"s);
    ExpectWire(0.0001, "\0\0510.000100000000000000004792173602385929598"s);
    ExpectWire(0x1p200L, "\0\0501.6069380442589902755419620923411626e+60"s);
    ExpectWire("\xC3\xA9"_utf8, "\0\2\xC3\xA9"s);
    ExpectWire(time::TickTime::TicksToTickTime(-2), "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE"s);
    ExpectWire(time::FrameRate::Create(0x102), "\0\0\0\0\0\0\1\2"s);
    ExpectWire(utility::Guid("01020304-0506-0708-090a-0b0c0d0e0f10"),
               "\1\2\3\4\5\6\7\10\11\12\13\14\15\16\17\20"s);
    ExpectWire(geom::PointT<std::int32_t>{1, -1}, "\0\0\0\1\xFF\xFF\xFF\xFF"s);
    ExpectWire(geom::RectT<float>{0.5F, 1, 2, 3}, "\0\0030.5\0\0011\0\0012\0\0013"s);
    ExpectWire(std::vector<std::pair<std::string, std::vector<bool>>>{{"a", {true}}, {"", {}}},
               "\0\0\0\2\0\1a\0\0\0\1\1\0\0\0\0\0\0"s);
    EXPECT_TRUE(Unwire<bool>("\x40"));
    std::locale::global(before);
}

TEST(WireForm, FloatsAreExactAndOtherTextActsAsInAStandardStream) {
    using Limits = std::numeric_limits<double>;
    for (double const value : {Limits::max(), Limits::min(), Limits::denorm_min(), 1.0 / 3, 1e22}) {
        EXPECT_EQ(Unwire<double>(Wire(value)), value);
        auto const narrow = static_cast<float>(value / 1e280);
        EXPECT_EQ(Unwire<float>(Wire(narrow)), narrow);
        auto const wide = value * -std::numeric_limits<long double>::denorm_min();
        EXPECT_EQ(Unwire<long double>(Wire(wide)), wide);
    }
    for (std::string const text : {"", "  ", "inf", "1.5x", " 2", "1e999", "-", "-0", "1,5"}) {
        double left = 7;
        std::istringstream(text) >> left;
        EXPECT_EQ(Unwire<double>(Wire(text), 7), left) << text;
    }
}

TEST(WireForm, StringsAreWrittenWholeAlsoToThemselves) {
    std::string const longest(65535, 'x');
    auto text = longest;
    OStringByteStream stream(text);
    EXPECT_THROW(stream << longest + 'x', byte_stream_exception);
    EXPECT_THROW(stream << UTF16String(65536, 'x'), byte_stream_exception);
    stream << text;
    EXPECT_EQ(text, longest + "\xFF\xFF" + longest);
    EXPECT_EQ(Unwire<std::string>(text.substr(65535)), longest);
}

TEST(WireForm, EndInsideAValueKeepsTheNumberAndTheReadCharacters) {
    std::string bytes = "\0\4a"s;
    IStringByteStream stream(bytes);
    std::string text = "before";
    EXPECT_THROW(stream >> text, eof_error);
    EXPECT_EQ(text, "a");
    stream.CurPos(2);
    std::uint16_t number = 5;
    EXPECT_THROW(stream >> number, eof_error);
    EXPECT_EQ(number, 5);
}

TEST(WireForm, TakesNoMoreMemoryThanTheDataHas) {
    auto bytes = "\xFF\xFF\xFF\xFF\0\0\0\1"s;
    std::vector<std::int32_t> numbers;
    EXPECT_THROW(IStringByteStream(bytes) >> numbers, eof_error);
    EXPECT_EQ(numbers, std::vector<std::int32_t>{1});
    EXPECT_LT(numbers.capacity(), 16u);
}

TEST(StreamSlots, GrowWithZeroesAndKeepTheirValues) {
    OCountingByteStream stream;
    auto const index = ByteStream_base::xalloc();
    EXPECT_EQ(ByteStream_base::xalloc(), index + 1);
    stream.iword(2) = 22;
    EXPECT_EQ(stream.iword(1000), 0);
    EXPECT_EQ(stream.iword(2), 22);
    stream.pword(0) = &stream;
    EXPECT_EQ(stream.pword(3), nullptr);
    EXPECT_THROW(stream.iword(-1), byte_stream_exception);
}

std::string S_called;

void RecordAndThrow(ByteStream_base::event inEvent, ByteStream_base& inStream, int inData) {
    S_called += static_cast<char>(inEvent + inData);
    inStream.register_callback(&RecordAndThrow, inData);
    throw std::runtime_error("dropped");
}

TEST(StreamCallbacks, RunInOrderAtDestructionAlsoIfTheyThrow) {
    {
        OCountingByteStream stream;
        for (char const data : {'a', 'c', 'b', 'a'}) {
            stream.register_callback(&RecordAndThrow, data);
            stream.register_callback(nullptr, data);
        }
        EXPECT_EQ(S_called, "");
    }
    EXPECT_EQ(S_called, "acba");
}

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
