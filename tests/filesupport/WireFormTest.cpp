#include <brindle/filesupport/WireForm.h>

#include <brindle/filesupport/StringByteStream.h>

#include <gtest/gtest.h>

namespace brindle::filesupport {
namespace {

using namespace std::string_literals;
using time::FrameRate;
using time::TickTime;

template <typename Value>
void ExpectForm(Value const& inValue, std::string const& inBytes) {
    std::string bytes;
    OStringByteStream(bytes) << inValue;
    EXPECT_EQ(bytes, inBytes);
    Value value{};
    IStringByteStream(bytes) >> value;
    EXPECT_EQ(value, inValue);
    // Cut off anywhere, it throws, and a value that is one leaves its target as it was.
    for (std::size_t size = 0; size < inBytes.size(); ++size) {
        auto part = inBytes.substr(0, size);
        Value target{};
        EXPECT_THROW(IStringByteStream(part) >> target, eof_error);
    }
}

TEST(WireForm, HasEveryValueOfTheLibrary) {
    ExpectForm("\xC3\xA9"_utf8, "\0\2\xC3\xA9"s);
    ExpectForm(TickTime::TicksToTickTime(-2), "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE"s);
    ExpectForm(FrameRate::Create(0x102), "\0\0\0\0\0\0\1\2"s);
    ExpectForm(utility::Guid("01020304-0506-0708-090a-0b0c0d0e0f10"),
               "\1\2\3\4\5\6\7\10\11\12\13\14\15\16\17\20"s);
    ExpectForm(geom::PointT<std::int32_t>{1, -1}, "\0\0\0\1\xFF\xFF\xFF\xFF"s);
    ExpectForm(geom::RectT<float>{0.5F, 1, 2, 3}, "\0\3"
                                                  "0.5\0\1"
                                                  "1\0\1"
                                                  "2\0\1"
                                                  "3"s);
    ExpectForm(std::vector<std::pair<std::string, std::vector<bool>>>{{"a", {true}}, {"", {}}},
               "\0\0\0\2\0\1"
               "a\0\0\0\1\1\0\0\0\0\0\0"s);
}

TEST(WireForm, TakesNoMoreMemoryThanTheDataHas) {
    auto bytes = "\xFF\xFF\xFF\xFF\0\0\0\1"s;
    std::vector<std::int32_t> numbers;
    EXPECT_THROW(IStringByteStream(bytes) >> numbers, eof_error);
    EXPECT_EQ(numbers, std::vector<std::int32_t>{1});
    EXPECT_LT(numbers.capacity(), 16u);
}

TEST(WireForm, CopiesBetweenStreamsOfOneStatement) {
    auto from = "some bytes"s;
    std::string to;
    OStringByteStream(to) << IStringByteStream(from);
    EXPECT_EQ(to, from);
}

} // namespace
} // namespace brindle::filesupport
