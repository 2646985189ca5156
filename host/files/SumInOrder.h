#pragma once

#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"
#include "host/files/FileSum.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace brindle::host {

/// The result for one file: its sum, or the reason why it has none.
struct SumOutcome {
    FileSum sum;
    std::string failure; ///< empty if there is a sum
};

/// The option `--jobs`: how many files may be summed at once; 0, one for each processor, if it is
/// not given. Throws `usage_error`.
std::uint32_t Jobs(Arguments const& inArguments);

/// Calls `inSum` for every index from 0 to `inCount` - 1 and `inDeliver` with each outcome, as
/// `RunInOrder` does, and shows a progress line. An `unreadable_error` thrown by `inSum` becomes
/// the outcome's failure.
void SumInOrder(std::size_t inCount, std::uint32_t inJobs, Diagnostics& ioDiagnostics,
                std::function<FileSum(std::size_t)> const& inSum,
                std::function<void(std::size_t, SumOutcome const&)> const& inDeliver);

} // namespace brindle::host
