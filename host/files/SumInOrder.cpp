#include "host/files/SumInOrder.h"

#include <brindle/threads/AsyncThreadedExecutor.h>
#include <brindle/threads/ForEach.h>

#include <boost/thread/exceptions.hpp>

#include <algorithm>
#include <thread>

namespace brindle::host {

namespace {

/// The pool of threads that work beside the calling one; null if there are none.
boost::shared_ptr<threads::AsyncThreadedExecutor> MakeHelpers(std::size_t inCount,
                                                              std::uint32_t inJobs) {
    std::size_t const jobs =
        std::min<std::size_t>(inCount, inJobs == 0 ? std::thread::hardware_concurrency() : inJobs);
    if (jobs <= 1) {
        return {};
    }
    try {
        return threads::CreateAsyncThreadedExecutor("worker", static_cast<int>(jobs - 1),
                                                    threads::kThreadPriorityNormal);
    } catch (boost::thread_resource_error const&) {
        return {};
    }
}

/// At its end the threads of the pool, if there is one, have ended and released what was posted to
/// them: otherwise the program could exit before they do.
struct WaitForEnd {
    threads::AsyncThreadedExecutor* pool;

    ~WaitForEnd() {
        if (pool != nullptr) {
            pool->Shutdown();
            pool->Synchronize();
        }
    }
};

} // namespace

std::uint32_t Jobs(Arguments const& inArguments) {
    constexpr std::uint32_t kMostJobs = 1024;
    constexpr std::uint32_t kAsManyAsProcessors = 0;
    return inArguments.Number("jobs", 1, kMostJobs, kAsManyAsProcessors);
}

void SumInOrder(std::size_t inCount, std::uint32_t inJobs, Diagnostics& ioDiagnostics,
                std::function<FileSum(std::size_t)> const& inSum,
                std::function<void(std::size_t, SumOutcome const&)> const& inDeliver) {
    std::uint64_t bytes = 0;
    auto const showProgress = [&](std::size_t inDone) {
        ioDiagnostics.ShowProgress(
            "summed " + std::to_string(inDone) + " of " + std::to_string(inCount) +
            (inCount == 1 ? " file, " : " files, ") + std::to_string(bytes >> 20) + " MiB");
    };
    auto const sum = [&](std::size_t inIndex) {
        SumOutcome outcome;
        try {
            outcome.sum = inSum(inIndex);
        } catch (unreadable_error const& error) {
            outcome.failure = error.what();
        }
        return outcome;
    };
    auto const deliver = [&](std::size_t inIndex, SumOutcome const& inOutcome) {
        bytes += inOutcome.sum.size;
        inDeliver(inIndex, inOutcome);
        showProgress(inIndex + 1);
    };
    showProgress(0);
    auto const helpers = MakeHelpers(inCount, inJobs);
    WaitForEnd const waitForEnd{helpers.get()};
    threads::ForEach(helpers, inCount, sum, deliver, kMostAhead);
}

} // namespace brindle::host
