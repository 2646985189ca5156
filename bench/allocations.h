#pragma once

#include <cstdint>

/// How often this thread has allocated so far.
std::int64_t Allocations() noexcept;
