#include "platform/Process.h"

#include <dlfcn.h>
#include <unistd.h>

#include <csignal>

namespace brindle::platform {

std::uint32_t ProcessId() noexcept {
    return static_cast<std::uint32_t>(::getpid());
}

std::uint32_t ThreadId() noexcept {
    return static_cast<std::uint32_t>(::gettid());
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
