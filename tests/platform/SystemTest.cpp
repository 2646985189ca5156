#include "platform/DebugOutput.h"
#include "platform/Process.h"

#include <gtest/gtest.h>

#include <future>
#include <unistd.h>

namespace brindle::platform {

TEST(System, ThreadsAndModulesAreToldApart) {
    auto const mine = ThreadId();
    EXPECT_NE(std::async(std::launch::async, ThreadId).get(), mine);
    static int const here = 0;
    EXPECT_NE(ModuleOf(&here), ModuleOf(reinterpret_cast<void const*>(&::getpid)));
    EXPECT_DEATH(BreakIntoDebugger(), "");
}

TEST(System, DebugOutputSurvivesAReaderThatIsGone) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    int const saved = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    WriteDebugOutput("one \xFF piece");
    char text[32] = {};
    EXPECT_EQ(read(ends[0], text, sizeof text - 1), 11);
    close(ends[0]);
    WriteDebugOutput("to nobody");
    dup2(saved, STDERR_FILENO);
    close(saved);
    close(ends[1]);
    EXPECT_STREQ(text, "one \xFF piece");
}

} // namespace brindle::platform
