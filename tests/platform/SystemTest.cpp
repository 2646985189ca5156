#include "platform/DebugOutput.h"
#include "platform/Locale.h"
#include "platform/Process.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <unistd.h>

namespace brindle::platform {

namespace {

TEST(System, TextIsOrderedWhateverUnitsItHolds) {
    UTF16String const ascending[] = {
        {}, u"a"_utf16, u"a\0"_utf16, u"a\0b"_utf16, u"a\0c"_utf16, u"ab"_utf16, u"b"_utf16,
    };
    for (auto const& lhs : ascending) {
        for (auto const& rhs : ascending) {
            int const order = CompareText(lhs, rhs);
            EXPECT_EQ(order < 0, &lhs < &rhs);
            EXPECT_EQ(order > 0, &lhs > &rhs);
        }
    }
    UTF16String const odd{0xDC00, 0xD800};
    EXPECT_EQ(CompareText(odd, odd), 0);
}

TEST(System, ThreadsAndModulesAreToldApart) {
    auto const mine = ThreadId();
    EXPECT_NE(std::async(std::launch::async, ThreadId).get(), mine);
    EXPECT_EQ(ProcessId(), static_cast<std::uint32_t>(getpid()));
    static int const here = 0;
    EXPECT_NE(ModuleOf(&here), nullptr);
    EXPECT_NE(ModuleOf(&here), ModuleOf(reinterpret_cast<void const*>(&::getpid)));
    EXPECT_EQ(ModuleOf(nullptr), nullptr);
    EXPECT_DEATH(BreakIntoDebugger(), "");
}

TEST(System, DebugOutputSurvivesAReaderThatIsGone) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    int const saved = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    WriteDebugOutput("one \xFF piece");
    char text[32] = {};
    auto const count = read(ends[0], text, sizeof text - 1);
    close(ends[0]);
    WriteDebugOutput("to nobody");
    dup2(saved, STDERR_FILENO);
    close(saved);
    close(ends[1]);
    EXPECT_EQ(count, 11);
    EXPECT_STREQ(text, "one \xFF piece");
}

} // namespace

} // namespace brindle::platform
