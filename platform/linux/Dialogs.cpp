#include "platform/Dialogs.h"

#include <dlfcn.h>

#include <cstdlib>

namespace brindle::platform {

namespace {

bool IsSet(char const* inVariable) noexcept {
    char const* const value = ::secure_getenv(inVariable);
    return value != nullptr && *value != '\0';
}

} // namespace

bool HasDisplay() noexcept {
    return IsSet("WAYLAND_DISPLAY") || IsSet("DISPLAY");
}

std::vector<std::string> DialogPrograms() {
    std::vector<std::string> paths;
    Dl_info info{};
    if (::dladdr(reinterpret_cast<void const*>(&HasDisplay), &info) != 0) {
        std::string const library = info.dli_fname;
        // A relative path was relative to what was the current directory at the time of loading.
        if (library.substr(0, 1) == "/") {
            paths.push_back(library.substr(0, library.rfind('/') + 1) +
                            BRINDLE_DIALOG_FROM_LIBRARY);
        }
    }
    paths.emplace_back(BRINDLE_DIALOG_PROGRAM);
    return paths;
}

} // namespace brindle::platform
