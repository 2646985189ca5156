#pragma once

// What the probes share. Each library in the table of docs/why.md has a probe, which prints a line
// "row: cell" for every row that has to be tried. A probe defines the four functions below.

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

/// Prints the rows of the library.
void Rows();
/// Does ordinary things: a text, a number, a pool. It is called before `main` and after it.
bool UseLibrary();
/// Saves as safely as the library can. False, or an exception, if that fails.
bool Save(std::string const& inPath, std::string const& inContent);
/// Lists the directory, which holds one file, and opens that by what the listing says.
bool OpensWhatItLists(std::string const& inDirectory);

inline void Row(char const* inRow, char const* inCell) {
    std::cout << inRow << ": " << inCell << std::endl;
}

inline void Row(char const* inRow, bool inIsTrue) {
    Row(inRow, inIsTrue ? "yes" : "no");
}

/// Waits three seconds at most.
template <typename Condition>
bool Await(Condition const& inCondition) {
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(3);
    while (!inCondition() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return inCondition();
}

/// The status with which a forked child ends that exits with what the function returns.
template <typename Function>
int StatusInChild(Function const& inFunction) {
    pid_t const child = fork();
    if (child == 0) {
        alarm(60);
        _Exit(inFunction());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

/// The rows of a pool of one thread. `inPost(calls)` returns whether the pool accepted a function
/// that counts its call.
template <typename Post>
void PoolRows(Post const& inPost) {
    static std::atomic<int> calls{0};
    bool isQueued = true;
    try {
        for (int work = 0; work < 100; ++work) {
            isQueued = inPost(calls) && isQueued;
        }
    } catch (std::exception const&) {
        isQueued = false;
    }
    Row("A pool queues what its threads cannot take yet",
        isQueued && Await([] { return calls == 100; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(200)); // the thread is idle then
    int const status = StatusInChild([&] {
        calls = 0;
        return !inPost(calls) ? 1 : Await([] { return calls == 1; }) ? 2 : 3;
    });
    char const* const cells[] = {"blocks", "refuses it", "runs it", "never runs it"};
    Row("A pool that a forked child inherits, given a function",
        cells[WIFEXITED(status) ? WEXITSTATUS(status) : 0]);
}

/// Saves 1 MiB over a small file where files may have 64 KiB. The signal that the system sends then
/// ends the process, unless it is ignored.
inline bool KeepsOld(void (*inSignalHandler)(int)) {
    std::ofstream("full") << "old";
    int const status = StatusInChild([&] {
        rlimit const limit{65536, 65536};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, inSignalHandler);
        try {
            return Save("full", std::string(1 << 20, 'x')) ? 1 : 0;
        } catch (std::exception const&) {
            return 0;
        }
    });
    bool const isAsMeant = inSignalHandler == SIG_IGN ? status == 0 : WIFSIGNALED(status);
    return isAsMeant && fs::file_size("full") == 3;
}

inline void FileRows() {
    fs::create_directory("names");
    std::ofstream("names/caf\xE9.txt") << "x"; // Latin-1
    Row("Lists and opens files whose names are not UTF-8", OpensWhatItLists("names"));

    std::ofstream("target") << "old";
    fs::create_symlink("target", "link");
    Row("A save through a symbolic link keeps the link",
        Save("link", "newer") && fs::is_symlink("link") && fs::file_size("target") == 5);

    Row("A save that fails half-way says so and keeps the old file", KeepsOld(SIG_IGN));
    Row("A save that is killed half-way keeps the old file", KeepsOld(SIG_DFL));
}

// `first` is constructed before the library is used, and therefore destroyed after whatever the
// library constructs when it is.
inline bool sIsTrial = false;
inline bool sWasUsable = false;
static struct First {
    ~First() {
        if (sIsTrial) {
            _Exit(sWasUsable && UseLibrary() ? 0 : 1);
        }
    }
} first;
static struct Second {
    Second() { sWasUsable = UseLibrary(); }
} second;

int main(int argc, char** argv) {
    std::string const argument = argc > 1 ? argv[1] : "";
    if (argument == "save") {
        return Save("saved", "new") ? 0 : 1;
    }
    if ((sIsTrial = argument == "statics")) {
        alarm(60);
        return 0;
    }
    Row("Usable before `main` and in destructors of static objects",
        std::system((argv[0] + std::string(" statics 2>/dev/null")).c_str()) == 0);
    Rows();
}
