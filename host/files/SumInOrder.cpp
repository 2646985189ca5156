#include "host/files/SumInOrder.h"

#include "host/files/RunInOrder.h"

#include <algorithm>
#include <vector>

namespace brindle::host {

std::uint32_t Jobs(Arguments const& inArguments) {
    constexpr std::uint32_t kMostJobs = 1024;
    constexpr std::uint32_t kAsManyAsProcessors = 0;
    return inArguments.Number("jobs", 1, kMostJobs, kAsManyAsProcessors);
}

void SumInOrder(std::size_t inCount, std::uint32_t inJobs, Diagnostics& ioDiagnostics,
                std::function<FileSum(std::size_t)> const& inSum,
                std::function<void(std::size_t, SumOutcome const&)> const& inDeliver) {
    std::vector<SumOutcome> outcomes(std::min(inCount, kMostAhead));
    std::uint64_t bytes = 0;
    auto const showProgress = [&](std::size_t inDone) {
        ioDiagnostics.ShowProgress(
            "summed " + std::to_string(inDone) + " of " + std::to_string(inCount) +
            (inCount == 1 ? " file, " : " files, ") + std::to_string(bytes >> 20) + " MiB");
    };
    auto const sum = [&](std::size_t inIndex) {
        SumOutcome& outcome = outcomes[inIndex % kMostAhead];
        outcome = SumOutcome();
        try {
            outcome.sum = inSum(inIndex);
        } catch (unreadable_error const& error) {
            outcome.failure = error.what();
        }
    };
    auto const deliver = [&](std::size_t inIndex) {
        SumOutcome const& outcome = outcomes[inIndex % kMostAhead];
        bytes += outcome.sum.size;
        inDeliver(inIndex, outcome);
        showProgress(inIndex + 1);
    };
    showProgress(0);
    RunInOrder(inCount, inJobs, sum, deliver);
}

} // namespace brindle::host
