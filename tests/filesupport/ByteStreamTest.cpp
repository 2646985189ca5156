#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/StringByteStream.h>

#include <gtest/gtest.h>

#include <limits>
#include <locale>
#include <stdexcept>
#include <thread>
#include <vector>

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
Value Unwire(std::string inBytes, Value inTarget = Value()) {
    IStringByteStream stream(inBytes);
    stream >> inTarget;
    EXPECT_EQ(stream.CurPos(), inBytes.size());
    return inTarget;
}

template <typename Value>
void ExpectWire(Value const& inValue, std::string const& inBytes) {
    EXPECT_EQ(Wire(inValue), inBytes);
    EXPECT_EQ(Unwire<Value>(inBytes), inValue);
}

TEST(WireForm, IsTheSameForEverAndInEveryLocale) {
    struct Commas : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    auto const before = std::locale::global(std::locale(std::locale(), new Commas));
    ExpectWire(true, "\1"s);
    ExpectWire(false, "\0"s);
    ExpectWire('x', "x"s);
    ExpectWire(static_cast<signed char>(-2), "\xFE"s);
    ExpectWire(static_cast<unsigned char>(0xFE), "\xFE"s);
    ExpectWire(std::int16_t{-2}, "\xFF\xFE"s);
    ExpectWire(std::uint16_t{0x0102}, "\1\2"s);
    ExpectWire(std::int32_t{0x01020304}, "\1\2\3\4"s);
    ExpectWire(std::uint32_t{0xFFFEFDFC}, "\xFF\xFE\xFD\xFC"s);
    ExpectWire(std::numeric_limits<std::int64_t>::min(), "\x80\0\0\0\0\0\0\0"s);
    ExpectWire(std::uint64_t{0x0102030405060708}, "\1\2\3\4\5\6\7\x08"s);
    ExpectWire(""s, "\0\0"s);
    ExpectWire("a\0\xFF"s, "\0\3a\0\xFF"s);
    ExpectWire(u"\u0102\U0001F600"_utf16, "\0\3\1\2\xD8\x3D\xDE\0"s);
    ExpectWire(1234.5, "\0\0061234.5"s);
    ExpectWire(-0.1f, "\0\036-0.100000001490116119384765625"s);
    ExpectWire(0.0001, "\0\0510.000100000000000000004792173602385929598"s);
    ExpectWire(0x1p200L, "\0\0501.6069380442589902755419620923411626e+60"s);
    EXPECT_TRUE(Unwire<bool>("\x40"));
    std::locale::global(before);
}

TEST(WireForm, FloatsComeBackExactly) {
    using Limits = std::numeric_limits<double>;
    for (double const value : {Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(),
                               Limits::epsilon(), 1.0 / 3, 123456789012345678.0, 1e22, 4e-320}) {
        EXPECT_EQ(Unwire<double>(Wire(value)), value);
        auto const narrow = static_cast<float>(value / 1e280);
        EXPECT_EQ(Unwire<float>(Wire(narrow)), narrow);
        auto const wide = static_cast<long double>(value) / 3;
        EXPECT_EQ(Unwire<long double>(Wire(wide)), wide);
    }
    auto const longest = -3 * std::numeric_limits<long double>::denorm_min();
    EXPECT_EQ(Unwire<long double>(Wire(longest)), longest);
}

TEST(WireForm, TextThatIsNoNumberLeavesWhatStandardExtractionLeaves) {
    std::pair<std::string, double> const cases[] = {{"", 7},
                                                    {"  ", 7},
                                                    {"inf", 0},
                                                    {"x1", 0},
                                                    {"1.5x", 1.5},
                                                    {" 2", 2},
                                                    {"1e999", std::numeric_limits<double>::max()}};
    for (auto const& [text, left] : cases) {
        EXPECT_EQ(Unwire<double>(Wire(text), 7), left) << text;
    }
}

TEST(WireForm, StringsGoWholeOrNotAtAllAlsoToTheirOwnEnd) {
    std::string const longest(65535, 'x');
    auto text = longest;
    OStringByteStream stream(text);
    EXPECT_THROW(stream << longest + 'x', byte_stream_exception);
    EXPECT_THROW(stream << UTF16String(65536, 'x'), byte_stream_exception);
    stream << text;
    EXPECT_EQ(text, longest + Wire(longest));
    EXPECT_EQ(Unwire<std::string>(Wire(longest)), longest);
}

TEST(WireForm, EndInsideAValueKeepsTheNumberAndTheCharactersSoFar) {
    std::string bytes = "\xFF\xFF\x61"
                        "bc";
    IStringByteStream stream(bytes);
    std::string text = "before";
    EXPECT_THROW(stream >> text, eof_error);
    EXPECT_EQ(text, "abc");
    stream.CurPos(4);
    std::uint16_t number = 5;
    EXPECT_THROW(stream >> number, eof_error);
    EXPECT_EQ(number, 5);
}

class UnknownLength : public IStringByteStream {
public:
    using IStringByteStream::IStringByteStream;
    std::uint64_t Length() const override { return 0; }
};

TEST(CopyingInserter, TakesTheLengthOrElseAllThereIs) {
    std::string source = "abcde";
    std::string copy;
    OStringByteStream out(copy);
    IStringByteStream known(source);
    out << known;
    known.CurPos(3);
    EXPECT_THROW(out << known, eof_error);
    EXPECT_EQ(copy, "abcdede");

    UnknownLength unknown(source);
    unknown.CurPos(1);
    out << unknown;
    EXPECT_EQ(copy, "abcdedebcde");

    // The sink's end is no end of the source.
    unknown.CurPos(0);
    OBufferByteStream full(nullptr, 0);
    EXPECT_THROW(full << unknown, eof_error);
}

TEST(StreamSlots, GrowWithZeroesAndKeepWhatTheyHold) {
    OCountingByteStream stream;
    EXPECT_EQ(stream.iword(5), 0);
    stream.iword(5) = 55;
    stream.iword(2) = 22;
    stream.pword(0) = &stream;
    EXPECT_EQ(stream.iword(1000), 0);
    EXPECT_EQ(stream.iword(5), 55);
    EXPECT_EQ(stream.iword(2), 22);
    EXPECT_EQ(stream.pword(3), nullptr);
    EXPECT_EQ(stream.pword(0), &stream);
    EXPECT_THROW(stream.iword(-1), byte_stream_exception);
    EXPECT_THROW(stream.pword(std::numeric_limits<int>::min()), byte_stream_exception);
}

TEST(StreamSlots, IndexesFollowEachOtherOnAllThreads) {
    auto const draw = [] {
        for (int i = 0; i < 5000; ++i) {
            ByteStream_base::xalloc();
        }
    };
    auto const first = ByteStream_base::xalloc();
    std::thread other(draw);
    draw();
    other.join();
    EXPECT_EQ(ByteStream_base::xalloc() - first, 10001);
}

std::vector<int> S_called;

void RecordAndThrow(ByteStream_base::event inEvent, ByteStream_base& inStream, int inData) {
    EXPECT_EQ(inEvent, 0);
    S_called.push_back(inData);
    inStream.register_callback(&RecordAndThrow, inData);
    throw std::runtime_error("dropped");
}

TEST(StreamCallbacks, RunInOrderAtDestructionWhateverTheyThrow) {
    {
        OCountingByteStream stream;
        stream.register_callback(&RecordAndThrow, 1);
        stream.register_callback(nullptr, 2);
        stream.register_callback(&RecordAndThrow, 3);
        stream.register_callback(&RecordAndThrow, 1);
        EXPECT_TRUE(S_called.empty());
    }
    EXPECT_EQ(S_called, (std::vector<int>{1, 3, 1}));
}

} // namespace
} // namespace brindle::filesupport
