#include "debug/src/trace/TraceCells.h"

#include <functional>
#include <string_view>

namespace brindle::debug::impl {

namespace {

std::size_t HashOf(UTF8String const& inName) noexcept {
    std::string_view const bytes(reinterpret_cast<char const*>(inName.data()), inName.size());
    return std::hash<std::string_view>()(bytes);
}

TraceCell* FindIn(std::atomic<TraceCell*> const& inBucket, std::size_t inHash,
                  UTF8String const& inName) noexcept {
    auto* cell = inBucket.load(std::memory_order_acquire);
    while (cell != nullptr && (cell->hash != inHash || cell->name != inName)) {
        cell = cell->next;
    }
    return cell;
}

} // namespace

std::atomic<TraceCell*> TraceCells::S_buckets[kBuckets];

TraceCell* TraceCells::Find(UTF8String const& inName) noexcept {
    auto const hash = HashOf(inName);
    return FindIn(S_buckets[hash % kBuckets], hash, inName);
}

TraceCell& TraceCells::FindOrMake(UTF8String const& inName) {
    auto const hash = HashOf(inName);
    auto& bucket = S_buckets[hash % kBuckets];
    auto* cell = FindIn(bucket, hash, inName);
    if (cell == nullptr) {
        cell = new TraceCell(inName, hash, bucket.load(std::memory_order_relaxed));
        bucket.store(cell, std::memory_order_release);
    }
    return *cell;
}

} // namespace brindle::debug::impl
