// A program that knows nothing of the library, and loads, uses and unloads a plug-in that does. The
// library must stay, for the thread still has to run code of it when it ends.
#include <dlfcn.h>
#include <link.h>

#include <cstdio>
#include <thread>

namespace {

bool UsePlugin(char const* inPath) {
    void* const plugin = ::dlopen(inPath, RTLD_NOW | RTLD_LOCAL);
    void* const use = plugin != nullptr ? ::dlsym(plugin, "UseLibrary") : nullptr;
    bool const works = use != nullptr && reinterpret_cast<bool (*)()>(use)();
    return works && ::dlclose(plugin) == 0;
}

/// Whether a library is loaded and says that it stays: others may hold it, too, but need not.
bool StaysLoaded(char const* inPath) {
    void* const library = ::dlopen(inPath, RTLD_NOW | RTLD_NOLOAD);
    link_map* map = nullptr;
    if (library == nullptr || ::dlinfo(library, RTLD_DI_LINKMAP, &map) != 0) {
        return false;
    }
    for (ElfW(Dyn) const* entry = map->l_ld; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_FLAGS_1) {
            return (entry->d_un.d_val & DF_1_NODELETE) != 0;
        }
    }
    return false;
}

} // namespace

/// The words are the plug-in and the file that holds the library.
int main(int, char** inWords) {
    bool isDone = false;
    std::thread([&] { isDone = UsePlugin(inWords[1]); }).join();
    if (!isDone) {
        std::fprintf(stderr, "the plug-in does not work\n");
        return 1;
    }
    if (!StaysLoaded(inWords[2])) {
        std::fprintf(stderr, "the library can be unloaded\n");
        return 1;
    }
    return 0;
}
