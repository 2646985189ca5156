#include <brindle/filesupport/BufferByteStream.h>
#include <brindle/filesupport/ByteStreamOperators.h>
#include <brindle/filesupport/CountingByteStream.h>
#include <brindle/filesupport/StringByteStream.h>

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>
#include <locale>
#include <set>
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

TEST(WireForm, IsTheSameForEver) {
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
    ExpectWire(UTF16String(), "\0\0"s);
    ExpectWire(u"\u0102\U0001F600"_utf16, "\0\3\1\2\xD8\x3D\xDE\0"s);
    ExpectWire(1.5, "\0\3"
                    "1.5"s);
    ExpectWire(-0.1f, "\0\x1e-0.100000001490116119384765625"s);
    ExpectWire(0.0001, "\0\x29"
                       "0.000100000000000000004792173602385929598"s);
    ExpectWire(0x1p200L, "\0\x28"
                         "1.6069380442589902755419620923411626e+60"s);
    EXPECT_TRUE(Unwire<bool>("\x40"));
    EXPECT_EQ(Unwire<std::int32_t>(Wire(std::uint32_t{0x80000000})),
              std::numeric_limits<std::int32_t>::min());
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
    EXPECT_LT(Wire(-std::numeric_limits<long double>::denorm_min() * 3).size(), 64u);
}

TEST(WireForm, FloatTextIgnoresTheLocale) {
    struct Commas : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    auto const before = std::locale::global(std::locale(std::locale(), new Commas));
    ExpectWire(1234.5, "\0\6"
                       "1234.5"s);
    std::locale::global(before);
}

TEST(WireForm, TextThatIsNoNumberLeavesWhatStandardExtractionLeaves) {
    struct {
        std::string text;
        double left;
    } const cases[] = {{"", 7},
                       {"  ", 7},
                       {"inf", 0},
                       {"x1", 0},
                       {"1.5x", 1.5},
                       {" 2", 2},
                       {"1e999", std::numeric_limits<double>::max()}};
    for (auto const& c : cases) {
        EXPECT_EQ(Unwire<double>(Wire(c.text), 7), c.left) << c.text;
    }
}

TEST(WireForm, LongestStringPassesAndOneMoreIsRefusedWhole) {
    std::string const longest(65535, 'x');
    EXPECT_EQ(Unwire<std::string>(Wire(longest)), longest);
    std::string bytes;
    OStringByteStream stream(bytes);
    EXPECT_THROW(stream << longest + 'x', byte_stream_exception);
    EXPECT_THROW(stream << UTF16String(65536, 'x'), byte_stream_exception);
    EXPECT_EQ(bytes, "");
}

TEST(WireForm, EndInsideAValueKeepsTheNumberAndTheCharactersSoFar) {
    std::string bytes = "\xFF\xFF"
                        "abc";
    IStringByteStream stream(bytes);
    std::string text = "before";
    EXPECT_THROW(stream >> text, eof_error);
    EXPECT_EQ(text, "abc");
    stream.CurPos(4);
    std::uint16_t number = 5;
    EXPECT_THROW(stream >> number, eof_error);
    EXPECT_EQ(number, 5);
}

/// A stream over a string that does not tell its length.
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
    EXPECT_EQ(copy, "abcde");

    known.CurPos(3);
    EXPECT_THROW(out << known, eof_error);
    EXPECT_EQ(copy, "abcdede");

    UnknownLength unknown(source);
    unknown.CurPos(1);
    out << unknown;
    EXPECT_EQ(copy, "abcdedebcde");

    // The sink's end is no end of the source.
    std::uint8_t small[2];
    OBufferByteStream full(small, sizeof small);
    unknown.CurPos(0);
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
    EXPECT_EQ(stream.pword(0), &stream);
    EXPECT_EQ(stream.pword(3), nullptr);

    stream.iword(-1) = 9;
    EXPECT_EQ(stream.iword(std::numeric_limits<int>::min()), 0);
    stream.pword(-1) = &stream;
    EXPECT_EQ(stream.pword(-7), nullptr);
}

TEST(StreamSlots, IndexesAreDistinctOnAllThreads) {
    std::array<std::vector<int>, 2> drawn;
    auto const draw = [](std::vector<int>& outIndexes) {
        for (int i = 0; i < 5000; ++i) {
            outIndexes.push_back(ByteStream_base::xalloc());
        }
    };
    std::thread other(draw, std::ref(drawn[1]));
    draw(drawn[0]);
    other.join();
    std::set<int> all(drawn[0].begin(), drawn[0].end());
    all.insert(drawn[1].begin(), drawn[1].end());
    EXPECT_EQ(all.size(), 10000u);
    EXPECT_EQ(*all.rbegin() - *all.begin(), 9999);
}

std::vector<int> S_called;

void Record(ByteStream_base::event inEvent, ByteStream_base&, int inData) {
    EXPECT_EQ(inEvent, 0);
    S_called.push_back(inData);
}

void RecordAndThrow(ByteStream_base::event inEvent, ByteStream_base& inStream, int inData) {
    Record(inEvent, inStream, inData);
    inStream.register_callback(&RecordAndThrow, inData);
    throw std::runtime_error("dropped");
}

TEST(StreamCallbacks, RunInOrderAtDestructionWhateverTheyThrow) {
    S_called.clear();
    {
        OCountingByteStream stream;
        stream.register_callback(&Record, 1);
        stream.register_callback(nullptr, 2);
        stream.register_callback(&RecordAndThrow, 3);
        stream.register_callback(&Record, 1);
        EXPECT_TRUE(S_called.empty());
    }
    EXPECT_EQ(S_called, (std::vector<int>{1, 3, 1}));
}

} // namespace
} // namespace brindle::filesupport
