#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace brindle::host {

/// How far `RunInOrder` computes ahead of what it has delivered.
constexpr std::size_t kMostAhead = 1024;

/// Calls `inCompute` for 0 to `inCount` - 1, up to `inJobs` at a time, 0 meaning one for each
/// processor, and `inDeliver` for each that is computed, in their order and one at a time. Indices
/// that are `kMostAhead` apart are never under way together: the first has been delivered before
/// the second is computed.
///
/// Both are called on the threads of a pool; on the caller's if there is to be one job, or if the
/// system refuses the threads, which is reported. What one of them throws ends the run, as soon as
/// the calls that are under way have ended, and goes to the caller. Blocks until all is done.
void RunInOrder(std::size_t inCount, std::uint32_t inJobs,
                std::function<void(std::size_t)> const& inCompute,
                std::function<void(std::size_t)> const& inDeliver);

} // namespace brindle::host
