#include "platform/Process.h"

#include "platform/Paths.h"

#include <dlfcn.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <string_view>
#include <vector>

namespace brindle::platform {

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

void BreakIntoDebugger() noexcept {
#if defined(__x86_64__) || defined(__i386__)
    asm volatile("int3");
#elif defined(__aarch64__)
    asm volatile("brk #0xF000");
#else
    std::raise(SIGTRAP);
#endif
}

} // namespace brindle::platform
