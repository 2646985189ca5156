#include "config/src/Module.h"

#include "platform/Process.h"

#include <atomic>

namespace brindle::config {

namespace {

std::atomic<void*> S_moduleP{nullptr};

/// Runs at the library's load and unload. Module.cpp is the last of the sources that are linked
/// into the shared library, so that this is the last static to be constructed and the first to be
/// destroyed there.
struct ModuleEntry {
    ModuleEntry() noexcept { S_moduleP.store(platform::ModuleOf(&S_moduleP)); }
    ~ModuleEntry() { S_moduleP.store(nullptr); }
};

ModuleEntry const S_entry;

} // namespace

void* ModuleHandle() noexcept {
    return S_moduleP.load();
}

} // namespace brindle::config
