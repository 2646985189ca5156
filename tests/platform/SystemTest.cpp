#include "platform/DebugOutput.h"
#include "platform/Process.h"

#include <gtest/gtest.h>

#include <csignal>
#include <future>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brindle::platform {

TEST(System, ThreadsAndModulesAreToldApart) {
    auto const mine = ThreadId();
    EXPECT_NE(std::async(std::launch::async, ThreadId).get(), mine);
    static int const here = 0;
    EXPECT_NE(ModuleOf(&here), ModuleOf(reinterpret_cast<void const*>(&::getpid)));
}

TEST(System, ABreakStopsInADebuggerOnly) {
    EXPECT_FALSE(BreakIntoDebugger());
    pid_t const child = ::fork();
    if (child == 0) {
        ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        ::_exit(BreakIntoDebugger() ? 7 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status)) {
        GTEST_SKIP() << "processes may not be traced here";
    }
    EXPECT_EQ(WSTOPSIG(status), SIGTRAP);
    ::ptrace(PTRACE_CONT, child, nullptr, 0);
    ::waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 7);
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
