#include "tests/support/TracedChild.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <map>
#include <string>
#include <sys/syscall.h>
#include <thread>
#include <vector>

namespace brindle {

namespace {

/// What a process asked of the kernel.
struct Activity {
    std::vector<std::string> files; ///< paths that it opened or looked at
    int starts = 0;                 ///< threads and processes that it started
};

std::string TextAt(pid_t inProcess, std::uint64_t inAddress) {
    std::ifstream memory("/proc/" + std::to_string(inProcess) + "/mem");
    memory.seekg(static_cast<std::streamoff>(inAddress));
    std::string text;
    std::getline(memory, text, '\0');
    return text;
}

constexpr int kStartsSomething = -1;

/// Which argument of a call is a path. Processors that came later have only the calls that take a
/// directory.
std::map<long, int> const kWatchedCalls = {
    {SYS_clone, kStartsSomething},
    {SYS_clone3, kStartsSomething},
    {SYS_openat, 1},
    {SYS_statx, 1},
    {SYS_faccessat, 1},
    {SYS_readlinkat, 1},
#ifdef SYS_newfstatat
    {SYS_newfstatat, 1},
#endif
#ifdef SYS_open
    {SYS_fork, kStartsSomething},
    {SYS_vfork, kStartsSomething},
    {SYS_open, 0},
    {SYS_stat, 0},
    {SYS_lstat, 0},
    {SYS_access, 0},
    {SYS_readlink, 0},
#endif
};

/// Runs `inBody` in a process of its own, in a locale that has files, and watches it. Returns as
/// `RunTraced`.
template <typename Body>
std::optional<int> Watch(Body inBody, Activity& outActivity) {
    auto const work = [&] {
        ::setenv("LC_ALL", "de_DE.UTF-8", 1);
        return inBody() ? 0 : 1;
    };
    return tests::RunTraced(work, [&](pid_t inProcess, __ptrace_syscall_info const& inCall) {
        auto const watched = kWatchedCalls.find(static_cast<long>(inCall.entry.nr));
        if (inCall.op != PTRACE_SYSCALL_INFO_ENTRY || watched == kWatchedCalls.end()) {
            return;
        }
        if (watched->second == kStartsSomething) {
            ++outActivity.starts;
        } else {
            outActivity.files.push_back(TextAt(inProcess, inCall.entry.args[watched->second]));
        }
    });
}

TEST(Load, TouchesNoFileAndStartsNoThread) {
    Activity control;
    auto const useBoth = [] {
        std::thread([] {}).join();
        return std::fopen("/nonexistent/file", "r") == nullptr;
    };
    if (!Watch(useBoth, control)) {
        GTEST_SKIP() << "processes may not be traced here";
    }
    EXPECT_EQ(control.starts, 1);
    EXPECT_EQ(control.files, std::vector<std::string>{"/nonexistent/file"});

    Activity load;
    auto const loadLibrary = [] { return ::dlopen(BRINDLE_LIBRARY, RTLD_NOW) != nullptr; };
    EXPECT_EQ(Watch(loadLibrary, load), 0);
    EXPECT_EQ(load.starts, 0);
    bool libraryWasSeen = false;
    for (std::string const& file : load.files) {
        libraryWasSeen |= file == BRINDLE_LIBRARY;
        // The loader looks for what the library links against.
        EXPECT_TRUE(file.find(".so") != std::string::npos || file.empty()) << file;
    }
    EXPECT_TRUE(libraryWasSeen);
}

} // namespace

} // namespace brindle
