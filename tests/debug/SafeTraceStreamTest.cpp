#include <brindle/debug/SafeTraceStream.h>

#include <brindle/utility/TextTypes.h>

#include <gtest/gtest.h>

#include <limits>
#include <locale>

namespace brindle::debug {

namespace {

/// What the work writes to the debug channel.
template <typename Work>
std::string SentBy(Work const& inWork) {
    testing::internal::CaptureStderr();
    {
        SafeTraceStream stream;
        inWork(stream);
    }
    return testing::internal::GetCapturedStderr();
}

TEST(SafeTraceStream, SendsPiecesOf511Units) {
    for (std::size_t length = 505; length < 2000; ++length) {
        auto const text = UTF16String(length, 0x20AC) + u"\U0001F600 end"_utf16;
        auto const sent = SentBy([&](auto& ioOut) { ioOut << text.c_str(); });
        auto const pair = length % 511 == 510 ? "\xED\xA0\xBD\xED\xB8\x80 end" // is split
                                              : "\xF0\x9F\x98\x80 end";
        ASSERT_EQ(sent.substr(0, 3 * length).find_first_not_of("\u20AC"), std::string::npos);
        ASSERT_EQ(sent.substr(3 * length), pair) << length;
    }
}

TEST(SafeTraceStream, WritesTextAndDecimals) {
    struct Grouping : std::numpunct<wchar_t> {
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale const old = std::locale::global(std::locale(std::locale(), new Grouping));
    auto const sent = SentBy([](auto& ioOut) {
        ioOut << "a\xE9 " << u"\u20AC\U0001F600 "_utf16.c_str() << std::int32_t{-1234567} << " "
              << std::numeric_limits<std::uint32_t>::max() << " "
              << std::numeric_limits<std::int64_t>::min() << " "
              << std::numeric_limits<std::uint64_t>::max() << static_cast<char const*>(nullptr)
              << static_cast<std::uint16_t const*>(nullptr);
    });
    std::locale::global(old);
    EXPECT_EQ(sent, "a\xEF\xBF\xA9 \xE2\x82\xAC\xF0\x9F\x98\x80 -1234567 4294967295 "
                    "-9223372036854775808 18446744073709551615");
}

} // namespace

} // namespace brindle::debug
