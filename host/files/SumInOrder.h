#pragma once

#include "host/commandline/Arguments.h"
#include "host/commandline/Diagnostics.h"
#include "host/files/FileSum.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace brindle::host {

/// What came of summing a file: a sum, or a reason why there is none.
struct SumOutcome {
    FileSum sum;
    std::string failure; ///< empty if there is a sum
};

/// The option `--jobs`: how many files may be summed at once, 0 meaning one for each processor.
/// Throws `usage_error`.
std::uint32_t Jobs(Arguments const& inArguments);

/// Calls `inSum` for 0 to `inCount` - 1 and `inDeliver` with what came of each, as `RunInOrder`
/// does, and shows how far the work is. An `unreadable_error` of `inSum` is an outcome like any
/// other.
void SumInOrder(std::size_t inCount, std::uint32_t inJobs, Diagnostics& ioDiagnostics,
                std::function<FileSum(std::size_t)> const& inSum,
                std::function<void(std::size_t, SumOutcome const&)> const& inDeliver);

} // namespace brindle::host
