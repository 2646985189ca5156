#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

namespace brindle {

namespace {

/// What a process asked of the kernel.
struct Activity {
    std::vector<std::string> files; ///< paths that it opened or looked at
    int starts = 0;                 ///< threads and processes that it started
    int exitStatus = -1;            ///< -1 if it could not be watched
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

void Record(pid_t inProcess, Activity& ioActivity) {
    __ptrace_syscall_info info{};
    ::ptrace(PTRACE_GET_SYSCALL_INFO, inProcess, sizeof info, &info);
    if (info.op != PTRACE_SYSCALL_INFO_ENTRY) {
        return;
    }
    switch (info.entry.nr) {
    case SYS_openat:
    case SYS_newfstatat:
    case SYS_statx:
    case SYS_faccessat:
    case SYS_readlinkat:
        ioActivity.files.push_back(TextAt(inProcess, info.entry.args[1]));
        break;
    case SYS_open:
    case SYS_stat:
    case SYS_lstat:
    case SYS_access:
    case SYS_readlink:
        ioActivity.files.push_back(TextAt(inProcess, info.entry.args[0]));
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
Activity Watch(Body inBody) {
    pid_t const process = ::fork();
    if (process == 0) {
        ::setenv("LC_ALL", "de_DE.UTF-8", 1);
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
            ::_exit(99);
        }
        ::raise(SIGSTOP);
        ::_exit(inBody() ? 0 : 1);
    }
    Activity activity;
    int status = 0;
    ::waitpid(process, &status, 0);
    if (!WIFSTOPPED(status)) {
        return activity;
    }
    ::ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    while (!WIFEXITED(status) && !WIFSIGNALED(status)) {
        if (WIFSTOPPED(status) && WSTOPSIG(status) == (SIGTRAP | 0x80)) {
            Record(process, activity);
        }
        ::ptrace(PTRACE_SYSCALL, process, nullptr, nullptr);
        ::waitpid(process, &status, 0);
    }
    activity.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return activity;
}

TEST(Load, TouchesNoFileAndStartsNoThread) {
    Activity const control = Watch([] {
        std::thread([] {}).join();
        return std::fopen("/nonexistent/file", "r") == nullptr;
    });
    if (control.exitStatus == -1) {
        GTEST_SKIP() << "processes may not be watched here";
    }
    EXPECT_EQ(1, control.starts);
    EXPECT_EQ(std::vector<std::string>{"/nonexistent/file"}, control.files);

    Activity const load = Watch([] { return ::dlopen(BRINDLE_LIBRARY, RTLD_NOW) != nullptr; });
    EXPECT_EQ(0, load.exitStatus);
    EXPECT_EQ(0, load.starts);
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
