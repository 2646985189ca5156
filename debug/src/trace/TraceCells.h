#pragma once

#include <brindle/debug/TraceCategory.h>
#include <brindle/utility/TextTypes.h>

#include <cstddef>
#include <limits>

namespace brindle::debug::impl {

// Limits with a meaning of their own.
constexpr std::int64_t kLimit_NothingPasses = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kLimit_AskAlways = std::numeric_limits<std::int64_t>::max();

constexpr std::int64_t LimitAt(std::int32_t inVolume) noexcept {
    return std::int64_t{2} * inVolume;
}
/// The same, but the database has to be asked for what may pass.
constexpr std::int64_t LimitToAskAt(std::int32_t inVolume) noexcept {
    return LimitAt(inVolume) + 1;
}

static_assert(kLimit_NothingPasses % 2 == 0 && kLimit_AskAlways % 2 == 1);

/// The answers for one category, which are shared by everybody who asks about it. Cells are never
/// destroyed, so that handles stay valid.
struct TraceCell : TraceAnswers {
    TraceCell(UTF8String const& inName, std::size_t inHash, TraceCell* inNext)
        : TraceAnswers{{kLimit_AskAlways}}, name(inName), hash(inHash), next(inNext) {}

    UTF8String const name;
    std::size_t const hash;
    TraceCell* const next; // in the bucket
    // What `limit` is when questions are not being refused.
    std::int64_t knownLimit = kLimit_AskAlways;
};

/// The cells by name: a hash table whose buckets grow at the front. `Find` takes no lock and never
/// waits: a cell is complete when it becomes reachable, and what it points to never changes. All
/// others need a lock, which callers share.
class TraceCells {
public:
    /// Null if there is none.
    static TraceCell* Find(UTF8String const& inName) noexcept;
    /// Makes one, which has to be asked, if there is none.
    static TraceCell& FindOrMake(UTF8String const& inName);
    /// Calls the function with each cell.
    template <typename Function>
    static void ForEach(Function inFunction) {
        for (auto const& bucket : S_buckets) {
            for (auto* cell = bucket.load(std::memory_order_relaxed); cell != nullptr;
                 cell = cell->next) {
                inFunction(*cell);
            }
        }
    }

private:
    static constexpr std::size_t kBuckets = 1024; // programs have tens to thousands of categories

    static std::atomic<TraceCell*> S_buckets[kBuckets];
};

} // namespace brindle::debug::impl
