#include <brindle/debug/SafeTraceStream.h>

#include "tests/support/ChildProcess.h"

#include <brindle/utility/TextTypes.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <locale>
#include <sys/socket.h>
#include <vector>

namespace brindle::debug {

namespace {

using Texts = std::vector<std::string>;

/// What the work writes to the debug channel, a text for each call of the system.
Texts SentBy(std::function<void(SafeTraceStream&)> const& inWork) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) != 0) {
        return {"no socket"};
    }
    tests::ChildProcess child([&] {
        ::dup2(ends[1], STDERR_FILENO);
        SafeTraceStream stream;
        inWork(stream);
        return 0;
    });
    ::close(ends[1]);
    Texts texts;
    char text[2048];
    for (ssize_t count = 0; (count = ::read(ends[0], text, sizeof text)) > 0;) {
        texts.emplace_back(text, static_cast<std::size_t>(count));
    }
    ::close(ends[0]);
    return texts;
}

TEST(SafeTraceStream, SendsPiecesOf511Units) {
    EXPECT_EQ(SentBy([](auto&) {}), Texts());
    EXPECT_EQ(SentBy([](auto& ioOut) { ioOut << std::string(1000, 'x').c_str(); }),
              (Texts{std::string(511, 'x'), std::string(489, 'x')}));
    EXPECT_EQ(SentBy([](auto& ioOut) { ioOut << UTF16String(510, 0x20AC).c_str() << "y"; }).size(),
              1u)
        << "a full piece is sent at once, and leaves nothing for the end";
    EXPECT_EQ(SentBy([](auto& ioOut) {
                  ioOut << std::string(510, 'x').c_str() << u"\U0001F600"_utf16.c_str();
              }),
              (Texts{std::string(510, 'x') + "\xED\xA0\xBD", "\xED\xB8\x80"}))
        << "a pair across the border is split";
}

TEST(SafeTraceStream, WritesTextAndDecimals) {
    struct Grouping : std::numpunct<wchar_t> {
        std::string do_grouping() const override { return "\3"; }
    };
    EXPECT_EQ(SentBy([](auto& ioOut) {
                  std::locale::global(std::locale(std::locale(), new Grouping));
                  ioOut << "a\xE9 " << u"\u20AC\U0001F600 "_utf16.c_str() << std::int32_t{-1234567}
                        << " " << std::numeric_limits<std::uint32_t>::max() << " "
                        << std::numeric_limits<std::int64_t>::min() << " "
                        << std::numeric_limits<std::uint64_t>::max()
                        << static_cast<char const*>(nullptr)
                        << static_cast<std::uint16_t const*>(nullptr);
              }),
              Texts{"a\xEF\xBF\xA9 \xE2\x82\xAC\xF0\x9F\x98\x80 -1234567 4294967295 "
                    "-9223372036854775808 18446744073709551615"});
}

} // namespace

} // namespace brindle::debug
