#pragma once

#include <atomic>

namespace brindle::console {

/// What `console::Terminate` calls first, if it is not null. A part of the console that has
/// something to end sets it when it begins.
inline std::atomic<void (*)()> S_atTerminate{nullptr};

} // namespace brindle::console
