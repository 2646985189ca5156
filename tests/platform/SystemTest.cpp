#include "platform/DebugOutput.h"
#include "platform/Process.h"

#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <sys/ptrace.h>

namespace brindle::platform {

TEST(System, ABreakStopsInADebuggerOnly) {
    EXPECT_FALSE(BreakIntoDebugger());
    tests::ChildProcess child([] {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        return BreakIntoDebugger() ? 7 : 1;
    });
    int status = 0;
    ::waitpid(child.Id(), &status, 0);
    if (WIFEXITED(status)) {
        GTEST_SKIP() << "processes may not be traced here";
    }
    EXPECT_EQ(WSTOPSIG(status), SIGTRAP);
    ::ptrace(PTRACE_CONT, child.Id(), nullptr, 0);
    EXPECT_EQ(child.Wait(), 7);
}

TEST(System, DebugOutputSurvivesAReaderThatIsGone) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    close(ends[0]);
    tests::ChildProcess child([&] {
        dup2(ends[1], STDERR_FILENO);
        WriteDebugOutput("to nobody");
        return 7;
    });
    close(ends[1]);
    EXPECT_EQ(child.Wait(), 7);
}

} // namespace brindle::platform
