#pragma once

#include <brindle/Export.h>
#include <brindle/threads/AsyncExecutor.h>

#include <boost/smart_ptr/shared_ptr.hpp>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace brindle::threads {

namespace impl {

/// What `RunForEach` calls, each with the context.
struct ForEachCalls {
    void* context;
    /// Computes the indices from the first one to the end, unless told to stop.
    void (*compute)(void* ioContext, std::size_t inFirst, std::size_t inEnd,
                    std::atomic<bool> const& inIsStopped);
    /// Null if nothing is delivered.
    void (*deliver)(void* ioContext, std::size_t inIndex);
};

BRN_API void RunForEach(boost::shared_ptr<AsyncExecutor> const& inExecutor, std::size_t inCount,
                        ForEachCalls const& inCalls, std::size_t inMostAhead);

/// The calls of a function of the index to compute, and one to deliver.
template <typename Compute, typename Deliver>
class ForEachFunctions {
public:
    ForEachFunctions(Compute& inCompute, Deliver& inDeliver)
        : mCompute(inCompute), mDeliver(inDeliver) {}

    ForEachCalls Calls() {
        return {this,
                [](void* ioContext, std::size_t inFirst, std::size_t inEnd,
                   std::atomic<bool> const& inIsStopped) {
                    auto& self = *static_cast<ForEachFunctions*>(ioContext);
                    for (; inFirst != inEnd && !inIsStopped.load(std::memory_order_relaxed);
                         ++inFirst) {
                        self.mCompute(inFirst);
                    }
                },
                [](void* ioContext, std::size_t inIndex) {
                    static_cast<ForEachFunctions*>(ioContext)->mDeliver(inIndex);
                }};
    }

private:
    Compute& mCompute;
    Deliver& mDeliver;
};

template <typename Compute>
void ComputeEach(boost::shared_ptr<AsyncExecutor> const& inExecutor, std::size_t inCount,
                 Compute&& inCompute) {
    auto const deliverNothing = [](std::size_t) {};
    ForEachFunctions functions(inCompute, deliverNothing);
    ForEachCalls calls = functions.Calls();
    calls.deliver = nullptr;
    RunForEach(inExecutor, inCount, calls, inCount);
}

} // namespace impl

/// Calls the function for every index from 0 to `inCount` - 1, on the threads of the executor and
/// on the calling thread, several at a time and in no particular order. Blocks until all calls have
/// returned. What they return comes as a vector in the order of the indices; or nothing, if they
/// return nothing.
///
///     std::vector<Image> const thumbnails =
///         ForEach(pool, files.size(), [&](std::size_t i) { return Thumbnail(files[i]); });
///
/// The first exception that a call throws ends the run: no more calls begin, and it is rethrown
/// when those that are in progress have returned. A function that should be cancelled throws.
///
/// The calling thread does all that no other thread does. So this needs no thread of the executor
/// to be free: it may be called on a worker of the same executor, on one that is busy, suspended or
/// shut down, and nested in itself; with a null pointer for the executor, the calling thread works
/// alone. Small items cost little, since a thread takes as many at a time as it computes in some
/// ten microseconds. Throws `std::bad_alloc`.
template <typename Function>
auto ForEach(boost::shared_ptr<AsyncExecutor> const& inExecutor, std::size_t inCount,
             Function&& inFunction) {
    static_assert(std::is_invocable_v<Function&, std::size_t>, "the function takes an index");
    using Result = std::invoke_result_t<Function&, std::size_t>;
    if constexpr (std::is_void_v<Result>) {
        impl::ComputeEach(inExecutor, inCount, inFunction);
    } else if constexpr (std::is_default_constructible_v<Result> && !std::is_same_v<Result, bool>) {
        std::vector<Result> results(inCount);
        impl::ComputeEach(inExecutor, inCount,
                          [&](std::size_t inIndex) { results[inIndex] = inFunction(inIndex); });
        return results;
    } else {
        std::vector<std::optional<Result>> computed(inCount);
        impl::ComputeEach(inExecutor, inCount, [&](std::size_t inIndex) {
            computed[inIndex].emplace(inFunction(inIndex));
        });
        std::vector<Result> results;
        results.reserve(inCount);
        for (auto& result : computed) {
            results.push_back(*std::move(result));
        }
        return results;
    }
}

/// As above, but hands each result to `inDeliver` as soon as it and all before it are there: on the
/// calling thread alone, in the order of the indices, as `inDeliver(index, result)`; or as
/// `inDeliver(index)`, if the function returns nothing. An index is delivered before the one
/// `inMostAhead` above it is computed, so no more results than that are kept. No thread of the
/// executor blocks if delivering is slow.
///
///     ForEach(pool, files.size(), [&](std::size_t i) { return SumOf(files[i]); },
///             [&](std::size_t i, Sum sum) { list << files[i] << sum; });
template <typename Function, typename Deliver>
void ForEach(boost::shared_ptr<AsyncExecutor> const& inExecutor, std::size_t inCount,
             Function&& inFunction, Deliver&& inDeliver, std::size_t inMostAhead = 256) {
    static_assert(std::is_invocable_v<Function&, std::size_t>, "the function takes an index");
    using Result = std::invoke_result_t<Function&, std::size_t>;
    std::size_t const mostAhead =
        std::clamp<std::size_t>(inMostAhead, 1, std::max<std::size_t>(inCount, 1));
    if constexpr (std::is_void_v<Result>) {
        impl::ForEachFunctions functions(inFunction, inDeliver);
        impl::RunForEach(inExecutor, inCount, functions.Calls(), mostAhead);
    } else {
        std::vector<std::optional<Result>> ring(mostAhead);
        auto const compute = [&](std::size_t inIndex) {
            ring[inIndex % mostAhead].emplace(inFunction(inIndex));
        };
        auto const deliver = [&](std::size_t inIndex) {
            auto& slot = ring[inIndex % mostAhead];
            Result result = *std::move(slot);
            slot.reset();
            inDeliver(inIndex, std::move(result));
        };
        impl::ForEachFunctions functions(compute, deliver);
        impl::RunForEach(inExecutor, inCount, functions.Calls(), mostAhead);
    }
}

} // namespace brindle::threads
