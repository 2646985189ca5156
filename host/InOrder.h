#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace brindle::host {

/// How far `RunInOrder` computes ahead of what it has delivered.
constexpr std::size_t kMostAhead = 1024;

/// Calls `inCompute` for 0 to `inCount` - 1, side by side on a pool of `inJobs` threads, 0 meaning
/// one for each processor, and `inDeliver` for each that is computed, in their order and one at a
/// time. Indices that are `kMostAhead` apart are never under way together: the first has been
/// delivered before the second is computed.
///
/// Both are called on threads of the pool. What one of them throws ends the run, as soon as the
/// calls that are under way have ended, and goes to the caller. Blocks until all is done.
void RunInOrder(std::size_t inCount, std::uint32_t inJobs,
                std::function<void(std::size_t)> const& inCompute,
                std::function<void(std::size_t)> const& inDeliver);

} // namespace brindle::host
