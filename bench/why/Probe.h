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

/// Waits two seconds at most.
template <typename Condition>
bool Await(Condition const& inCondition) {
    for (int tries = 0; tries < 200 && !inCondition(); ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return inCondition();
}

/// A forked child gives a function to a pool of its parent whose thread is idle. `inPost(calls)`
/// returns whether the pool accepted a function that counts its call.
template <typename Post>
void ForkRow(Post const& inPost) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    pid_t const child = fork();
    if (child == 0) {
        static std::atomic<int> calls{0};
        alarm(5);
        _Exit(!inPost(calls) ? 1 : Await([] { return calls == 1; }) ? 2 : 3);
    }
    int status = 0;
    waitpid(child, &status, 0);
    char const* const cells[] = {"blocks", "refuses it", "runs it", "never runs it"};
    Row("A pool that a forked child inherits, given a function",
        cells[WIFEXITED(status) ? WEXITSTATUS(status) : 0]);
}

inline void FileRows() {
    namespace fs = std::filesystem;
    fs::create_directory("names");
    std::ofstream("names/caf\xE9.txt") << "x"; // Latin-1
    Row("Opens every file that it lists, also where the name is no UTF-8",
        OpensWhatItLists("names"));

    std::ofstream("target") << "old";
    fs::create_symlink("target", "link");
    Row("A save through a symbolic link keeps the link",
        Save("link", "newer") && fs::is_symlink("link") && fs::file_size("target") == 5);

    std::ofstream("full") << "old";
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit const limit{65536, RLIM_INFINITY}, noLimit{RLIM_INFINITY, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
    bool isSaved = false;
    try {
        isSaved = Save("full", std::string(1 << 20, 'x'));
    } catch (std::exception const&) {
    }
    setrlimit(RLIMIT_FSIZE, &noLimit);
    Row("A save that fails half-way says so and keeps the old file",
        !isSaved && fs::file_size("full") == 3);
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
        alarm(10);
        return 0;
    }
    Row("Usable before `main` and in destructors of static objects",
        std::system((argv[0] + std::string(" statics 2>/dev/null")).c_str()) == 0);
    Rows();
}
