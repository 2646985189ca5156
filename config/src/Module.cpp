#include "config/src/Module.h"

#include "platform/Process.h"

#include <atomic>

namespace brindle::config {

namespace {

std::atomic<void*> S_moduleP{nullptr};

/// The library's entry and exit. Its object is the last static to come to be and the first to go.
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
