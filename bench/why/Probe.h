#pragma once

// What the probes share. Each library of the table in docs/why.md has a probe, which prints a line
// "row: cell" for every row that running it decides. A probe defines `Rows` and `UseLibrary`, and
// the two functions on files if the library has files.

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

/// Prints the rows that this library alone decides.
void Rows();
/// Does ordinary things by the library: texts, numbers, a pool. It is called before `main` and
/// after it.
bool UseLibrary();
/// Saves as safely as the library can. False, or an exception, if that fails.
bool Save(std::string const& inPath, std::string const& inContent);
/// Lists the directory, which holds one file, and opens that by what the listing says.
bool OpensWhatItLists(std::string const& inDirectory);

inline void Row(char const* inRow, std::string const& inCell) {
    std::cout << inRow << ": " << inCell << std::endl;
}

inline void Row(char const* inRow, bool inIsTrue) {
    Row(inRow, std::string(inIsTrue ? "yes" : "no"));
}

template <typename Condition>
bool Await(Condition const& inCondition) {
    for (int tries = 0; tries < 200 && !inCondition(); ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return inCondition();
}

/// What becomes of a function that a forked child gives to a pool of its parent. `inPost(ran)`
/// returns whether the pool accepted a function that sets `ran`.
template <typename Post>
void ForkRow(Post const& inPost) {
    pid_t const child = fork();
    if (child == 0) {
        static std::atomic<bool> ran{false};
        alarm(5);
        _Exit(!inPost(ran) ? 1 : Await([] { return ran.load(); }) ? 2 : 3);
    }
    int status = 0;
    waitpid(child, &status, 0);
    char const* const cells[] = {"", "refuses", "runs it", "accepts, never runs it"};
    Row("A function that a forked child gives to its parent's pool",
        std::string(WIFEXITED(status) ? cells[WEXITSTATUS(status)] : "blocks"));
}

inline std::string Content(std::string const& inPath) {
    std::ifstream file(inPath, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

inline void FileRows() {
    namespace fs = std::filesystem;
    fs::create_directory("names");
    std::ofstream("names/caf\xE9.txt") << "x"; // Latin-1
    Row("Opens every name that it lists, valid UTF-8 or not", OpensWhatItLists("names"));

    std::ofstream("target") << "old";
    fs::create_symlink("target", "link");
    Row("A save through a symbolic link keeps the link",
        Save("link", "new") && fs::is_symlink("link") && Content("target") == "new");

    std::ofstream("full") << "old";
    pid_t const child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit const limit{65536, 65536};
        setrlimit(RLIMIT_FSIZE, &limit);
        try {
            _Exit(Save("full", std::string(1 << 20, 'x')) ? 1 : 0);
        } catch (std::exception const&) {
            _Exit(0);
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    Row("A save that fails half-way is noticed and keeps the old file",
        status == 0 && Content("full") == "old");
}

// `first` is constructed before the library is used, and so is destroyed after whatever the library
// made at that first use.
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
        return Save(argv[2], "new") ? 0 : 1;
    }
    if (argument == "statics") {
        sIsTrial = true;
        alarm(10);
        return 0;
    }
    Row("Usable before `main` and in destructors of static objects",
        std::system((argv[0] + std::string(" statics 2>/dev/null")).c_str()) == 0);
    Rows();
}
