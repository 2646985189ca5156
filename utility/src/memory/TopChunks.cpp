#include "utility/src/memory/TopChunks.h"

#include "platform/AlignedMemory.h"

#include <new>

namespace brindle::utility {

std::atomic<TopChunks::Leaf*> TopChunks::S_leaves[];
std::array<TopChunks::Known, TopChunks::kKnownCount> TopChunks::S_known;

void* TopChunks::Allocate() noexcept {
    void* const chunk = platform::AllocateAligned(kLargeChunk, kAlignment);
    auto const address = reinterpret_cast<std::uintptr_t>(chunk);
    Leaf* const leaf =
        chunk != nullptr && (address >> kAddressBits) == 0 ? LeafOf(address) : nullptr;
    if (leaf == nullptr) {
        platform::FreeAligned(chunk);
        return nullptr;
    }
    (*leaf)[WordOf(address)].fetch_or(std::uint64_t{1} << BitOf(address),
                                      std::memory_order_relaxed);
    std::uintptr_t none = Known::kNone;
    KnownAt(address).compare_exchange_strong(none, address, std::memory_order_relaxed);
    return chunk;
}

void TopChunks::Free(void* inChunk) noexcept {
    auto const address = reinterpret_cast<std::uintptr_t>(inChunk);
    // Before the heap can hand the memory out again.
    (*LeafOf(address))[WordOf(address)].fetch_and(~(std::uint64_t{1} << BitOf(address)),
                                                  std::memory_order_relaxed);
    std::uintptr_t known = address;
    KnownAt(address).compare_exchange_strong(known, Known::kNone, std::memory_order_relaxed);
    platform::FreeAligned(inChunk);
}

bool TopChunks::Hold(void const* inBlock) noexcept {
    auto const address = reinterpret_cast<std::uintptr_t>(inBlock);
    // The rest of the MiB is other heap memory.
    if (address % kAlignment >= kLargeChunk || (address >> kAddressBits) != 0) {
        return false;
    }
    Leaf const* const leaf = S_leaves[address >> kLeafShift].load(std::memory_order_acquire);
    return leaf != nullptr &&
           (((*leaf)[WordOf(address)].load(std::memory_order_relaxed) >> BitOf(address)) & 1) != 0;
}

/// The leaf for an address, which is made if it does not exist; null without memory. Leaves are
/// never freed.
TopChunks::Leaf* TopChunks::LeafOf(std::uintptr_t inAddress) noexcept {
    std::atomic<Leaf*>& slot = S_leaves[inAddress >> kLeafShift];
    Leaf* leaf = slot.load(std::memory_order_acquire);
    if (leaf != nullptr) {
        return leaf;
    }
    void* const memory = platform::AllocateAligned(sizeof(Leaf), alignof(Leaf));
    if (memory == nullptr) {
        return nullptr;
    }
    Leaf* const made = new (memory) Leaf{};
    // Releases the zeros to the threads that find the leaf. Another thread may have been faster.
    if (slot.compare_exchange_strong(leaf, made, std::memory_order_acq_rel,
                                     std::memory_order_acquire)) {
        return made;
    }
    platform::FreeAligned(memory);
    return leaf;
}

} // namespace brindle::utility
