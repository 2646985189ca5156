#include "tests/support/TracedChild.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
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
    std::string text;
    for (;; inAddress += sizeof(long)) {
        long const word = ::ptrace(PTRACE_PEEKDATA, inProcess, inAddress, nullptr);
        char const* const bytes = reinterpret_cast<char const*>(&word);
        std::size_t const length = strnlen(bytes, sizeof word);
        text.append(bytes, length);
        if (length < sizeof word) {
            return text;
        }
    }
}

// Processors that came later have only the calls that take a directory. Those that are missing get
// numbers that no call has.
#ifndef SYS_open
constexpr long SYS_open = -1;
constexpr long SYS_stat = -2;
constexpr long SYS_lstat = -3;
constexpr long SYS_access = -4;
constexpr long SYS_readlink = -5;
constexpr long SYS_fork = -6;
constexpr long SYS_vfork = -7;
#endif
#ifndef SYS_newfstatat
constexpr long SYS_newfstatat = -8;
#endif

void Record(pid_t inProcess, __ptrace_syscall_info const& inCall, Activity& ioActivity) {
    if (inCall.op != PTRACE_SYSCALL_INFO_ENTRY) {
        return;
    }
    switch (static_cast<long>(inCall.entry.nr)) {
    case SYS_openat:
    case SYS_newfstatat:
    case SYS_statx:
    case SYS_faccessat:
    case SYS_readlinkat:
        ioActivity.files.push_back(TextAt(inProcess, inCall.entry.args[1]));
        break;
    case SYS_open:
    case SYS_stat:
    case SYS_lstat:
    case SYS_access:
    case SYS_readlink:
        ioActivity.files.push_back(TextAt(inProcess, inCall.entry.args[0]));
        break;
    case SYS_clone:
    case SYS_clone3:
    case SYS_fork:
    case SYS_vfork:
        ++ioActivity.starts;
        break;
    }
}

/// Runs `inBody` in a process of its own, in a locale that has files, and watches it.
template <typename Body>
tests::TracedEnd Watch(Body inBody, Activity& outActivity) {
    auto const work = [&] {
        ::setenv("LC_ALL", "de_DE.UTF-8", 1);
        return inBody() ? 0 : 1;
    };
    return tests::RunTraced(work, [&](pid_t inProcess, __ptrace_syscall_info const& inCall) {
        Record(inProcess, inCall, outActivity);
    });
}

TEST(Load, TouchesNoFileAndStartsNoThread) {
    Activity control;
    auto const useBoth = [] {
        std::thread([] {}).join();
        return std::fopen("/nonexistent/file", "r") == nullptr;
    };
    if (!Watch(useBoth, control).wasTraced) {
        GTEST_SKIP() << "processes may not be traced here";
    }
    EXPECT_EQ(control.starts, 1);
    EXPECT_EQ(control.files, std::vector<std::string>{"/nonexistent/file"});

    Activity load;
    auto const loadLibrary = [] { return ::dlopen(BRINDLE_LIBRARY, RTLD_NOW) != nullptr; };
    EXPECT_EQ(Watch(loadLibrary, load).status, 0);
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
