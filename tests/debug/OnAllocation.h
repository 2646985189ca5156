#pragma once

#include <functional>

namespace brindle::tests {

/// Done whenever this thread allocates, but not within itself. It stands for code of others that
/// runs in the middle of the library's.
inline thread_local std::function<void()> const* S_onAllocation = nullptr;

} // namespace brindle::tests
