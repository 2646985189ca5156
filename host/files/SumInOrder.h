#pragma once

#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"
#include "host/files/FileSum.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace brindle::host {

/// `SumInOrder` computes no more than this many sums ahead of the next one to be delivered, so a
/// ring of this size holds what else is known of these files.
constexpr std::size_t kMostAhead = 1024;

/// The result for one file: its sum, or the reason why it has none.
struct SumOutcome {
    FileSum sum;
    std::string failure; ///< empty if there is a sum
};

/// The option `--jobs`: how many files may be summed at once; 0, one for each processor, if it is
/// not given. Throws `usage_error`.
std::uint32_t Jobs(Arguments const& inArguments);

/// Calls `inSum` for every index from 0 to `inCount` - 1, on up to `inJobs` threads (0: one for
/// each processor), and `inDeliver` with each outcome, in ascending order and on the calling
/// thread. Shows a progress line. An `unreadable_error` thrown by `inSum` becomes the outcome's
/// failure. If the system refuses the threads, which is reported, the calling thread does it alone.
void SumInOrder(std::size_t inCount, std::uint32_t inJobs, Diagnostics& ioDiagnostics,
                std::function<FileSum(std::size_t)> const& inSum,
                std::function<void(std::size_t, SumOutcome const&)> const& inDeliver);

} // namespace brindle::host
