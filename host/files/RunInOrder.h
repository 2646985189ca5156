#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace brindle::host {

/// `RunInOrder` computes no more than this many results ahead of the next one to be delivered.
constexpr std::size_t kMostAhead = 1024;

/// Calls `inCompute` for every index from 0 to `inCount` - 1, up to `inJobs` calls at a time (0:
/// one for each processor), and `inDeliver` for every computed index, in ascending order and one at
/// a time. An index is delivered before the one `kMostAhead` above it is computed, so a ring of
/// `kMostAhead` results is enough.
///
/// Both functions run on the threads of a pool; on the calling thread if one job is enough, or if
/// the system refuses the threads, which is reported. The first exception that a call throws ends
/// the run and is rethrown to the caller, after the calls that are in progress have returned.
/// Blocks until the run is over.
void RunInOrder(std::size_t inCount, std::uint32_t inJobs,
                std::function<void(std::size_t)> const& inCompute,
                std::function<void(std::size_t)> const& inDeliver);

} // namespace brindle::host
