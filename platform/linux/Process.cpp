#include "platform/Process.h"

#include "platform/Paths.h"

#include "platform/linux/FileDescriptor.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <fstream>
#include <string_view>
#include <vector>

namespace brindle::platform {

namespace {

/// Whether the kernel names a tracer of this process. Allocates nothing, for the process may be in
/// any state.
bool IsTraced() noexcept {
    constexpr std::string_view kField = "\nTracerPid:\t";
    // The field stands within the first lines, of which only the first has a name in it.
    std::array<char, 1024> text{};
    FileDescriptor const file(
        Uninterrupted([] { return ::open("/proc/self/status", O_RDONLY | O_CLOEXEC); }));
    if (!file.IsOpen()) {
        return false;
    }
    auto const size =
        Uninterrupted([&] { return ::read(file.Get(), text.data(), text.size() - 1); });
    std::string_view const status(text.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    auto const place = status.find(kField);
    return place != std::string_view::npos && status.substr(place + kField.size(), 1) != "0";
}

} // namespace

std::uint32_t ProcessId() noexcept {
    return static_cast<std::uint32_t>(::getpid());
}

std::uint32_t ThreadId() noexcept {
    return static_cast<std::uint32_t>(::gettid());
}

Result<UTF16String> ExecutablePath() {
    // The kernel appends this to the path of a file that has gone.
    constexpr std::string_view kDeleted = " (deleted)";
    std::array<char, PATH_MAX> buffer{};
    auto const length = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (length <= 0) {
        return {{}, kError_FileNotFound};
    }
    std::string path(buffer.data(), static_cast<std::size_t>(length));
    struct stat status {};
    bool const isMarked = path.size() > kDeleted.size() &&
                          path.substr(path.size() - kDeleted.size()) == kDeleted &&
                          ::lstat(path.c_str(), &status) != 0;
    if (isMarked) {
        path.resize(path.size() - kDeleted.size());
    }
    return {PathFromNative(path), kError_None};
}

Result<std::string> AccountHome() {
    constexpr std::size_t kMostBytes = 1024 * 1024;
    for (std::size_t room = 1024; room <= kMostBytes; room *= 4) {
        std::vector<char> buffer(room);
        passwd account{};
        passwd* found = nullptr;
        int const error = ::getpwuid_r(::getuid(), &account, buffer.data(), buffer.size(), &found);
        if (error == ERANGE) {
            continue;
        }
        bool const hasHome =
            error == 0 && found != nullptr && found->pw_dir != nullptr && *found->pw_dir != '\0';
        return hasHome ? Result<std::string>{found->pw_dir, kError_None}
                       : Result<std::string>{{}, kError_FileNotFound};
    }
    return {{}, kError_FileNotFound};
}

void* ModuleOf(void const* inAddress) noexcept {
    Dl_info info{};
    return ::dladdr(inAddress, &info) != 0 ? info.dli_fbase : nullptr;
}

std::string CommandLine() {
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    std::string line;
    for (std::string word; std::getline(file, word, '\0');) {
        bool const isQuoted = word.empty() || word.find(' ') != std::string::npos;
        line += line.empty() ? "" : " ";
        line += isQuoted ? '"' + word + '"' : word;
    }
    return line;
}

bool BreakIntoDebugger() noexcept {
    if (!IsTraced()) {
        return false;
    }
    // Unlike a breakpoint instruction it leaves the program where it can go on, on every processor.
    std::raise(SIGTRAP);
    return true;
}

void EndProcess(int inStatus) noexcept {
    ::_exit(inStatus);
}

} // namespace brindle::platform
