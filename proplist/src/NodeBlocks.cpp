#include "proplist/src/NodeBlocks.h"

#include "proplist/src/PropNodes.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>
#include <vector>

namespace brindle::proplist::impl {

namespace {

using Block = std::vector<PropNodeSlot>;

constexpr std::size_t kMostSlots = 256;

std::uint64_t KeyStart(UTF8String const& inKey) noexcept {
    constexpr std::size_t kBytes = sizeof(std::uint64_t);
    std::uint64_t start = 0;
    if (inKey.size() >= kBytes) {
        std::uint8_t const* const bytes = inKey.data();
        for (std::size_t i = 0; i < kBytes; ++i) {
            start = start << 8 | bytes[i];
        }
        return start;
    }
    for (std::uint8_t const byte : inKey) {
        start = start << 8 | byte;
    }
    return inKey.empty() ? 0 : start << 8 * (kBytes - inKey.size());
}

int Compare(UTF8String const& inLHS, UTF8String const& inRHS) noexcept {
    int const order = std::memcmp(inLHS.data(), inRHS.data(), std::min(inLHS.size(), inRHS.size()));
    return order != 0                     ? order
           : inLHS.size() == inRHS.size() ? 0
           : inLHS.size() < inRHS.size()  ? -1
                                          : 1;
}

/// The first element for which the condition does not hold, found without a branch that hangs on
/// it: half of those would be mispredicted.
template <typename Condition>
PropNodeSlot const* PartitionPoint(PropNodeSlot const* inFirst, PropNodeSlot const* inEnd,
                                   Condition inCondition) noexcept {
    auto count = inEnd - inFirst;
    while (count > 1) {
        auto const half = count / 2;
        inFirst += inCondition(inFirst[half - 1]) ? half : 0;
        count -= half;
    }
    return inFirst + (count == 1 && inCondition(*inFirst) ? 1 : 0);
}

template <typename Vector>
auto At(Vector& ioVector, std::size_t inIndex) noexcept {
    return ioVector.begin() + static_cast<std::ptrdiff_t>(inIndex);
}

/// The index of the block that the key is in, if it is anywhere.
std::size_t BlockOf(PropNodeBlocks const& inBlocks, std::uint64_t inStart,
                    UTF8String const& inKey) noexcept {
    auto const second = std::next(inBlocks.begin());
    auto const beyond = std::partition_point(second, inBlocks.end(), [&](Block const& inBlock) {
        PropNodeSlot const& first = inBlock.front();
        return first.keyStart != inStart ? first.keyStart < inStart
                                         : Compare(first.node->GetKey(), inKey) <= 0;
    });
    return static_cast<std::size_t>(beyond - second);
}

/// Moves the upper half of a full block into a new one behind it.
void Split(PropNodeBlocks& ioBlocks, std::size_t inBlock) {
    Block upper;
    upper.reserve(kMostSlots);
    ioBlocks.insert(At(ioBlocks, inBlock + 1), std::move(upper));
    Block& lower = ioBlocks[inBlock];
    auto const half = At(lower, kMostSlots / 2);
    std::move(half, lower.end(), std::back_inserter(ioBlocks[inBlock + 1]));
    lower.erase(half, lower.end());
}

/// Brings the block and its successor together, if they need not even half a block and the first
/// has the room.
void Join(PropNodeBlocks& ioBlocks, std::size_t inBlock) noexcept {
    if (inBlock + 1 < ioBlocks.size()) {
        Block& lower = ioBlocks[inBlock];
        Block& upper = ioBlocks[inBlock + 1];
        if (lower.size() + upper.size() <= std::min(kMostSlots / 2, lower.capacity())) {
            std::move(upper.begin(), upper.end(), std::back_inserter(lower));
            ioBlocks.erase(At(ioBlocks, inBlock + 1));
        }
    }
}

} // namespace

NodePlace PlaceOf(PropNodeBlocks const& inBlocks, UTF8String const& inKey) noexcept {
    if (inBlocks.empty()) {
        return {0, 0, false};
    }
    std::uint64_t const start = KeyStart(inKey);
    std::size_t const blockIndex = BlockOf(inBlocks, start, inKey);
    Block const& block = inBlocks[blockIndex];
    PropNodeSlot const* const end = block.data() + block.size();
    PropNodeSlot const* slot = PartitionPoint(
        block.data(), end, [start](PropNodeSlot const& inSlot) { return inSlot.keyStart < start; });
    PropNodeSlot const* beyond = PartitionPoint(
        slot, end, [start](PropNodeSlot const& inSlot) { return inSlot.keyStart == start; });
    bool isThere = false;
    while (slot != beyond && !isThere) {
        PropNodeSlot const* const middle = slot + (beyond - slot) / 2;
        int const order = Compare(middle->node->GetKey(), inKey);
        isThere = order == 0;
        order < 0 ? slot = middle + 1 : beyond = middle;
        slot = isThere ? middle : slot;
    }
    return {blockIndex, static_cast<std::size_t>(slot - block.data()), isThere};
}

PropNodeBase* FindNode(PropNodeBlocks const& inBlocks, UTF8String const& inKey) noexcept {
    NodePlace const place = PlaceOf(inBlocks, inKey);
    return place.isThere ? inBlocks[place.block][place.slot].node.get() : nullptr;
}

void InsertNode(PropNodeBlocks& ioBlocks, NodePlace inPlace, std::unique_ptr<PropNodeBase> inNode) {
    PropNodeSlot slot{KeyStart(inNode->GetKey()), std::move(inNode)};
    bool const isFull = !ioBlocks.empty() && ioBlocks[inPlace.block].size() == kMostSlots;
    bool const isLast = inPlace.block + 1 >= ioBlocks.size() &&
                        (ioBlocks.empty() || inPlace.slot == ioBlocks.back().size());
    if (ioBlocks.empty() || (isFull && isLast)) {
        // What comes in order leaves full blocks behind it.
        Block block;
        block.reserve(ioBlocks.empty() ? 1 : kMostSlots);
        block.push_back(std::move(slot));
        ioBlocks.push_back(std::move(block));
        return;
    }
    if (isFull) {
        Split(ioBlocks, inPlace.block);
        if (inPlace.slot > kMostSlots / 2) {
            ++inPlace.block;
            inPlace.slot -= kMostSlots / 2;
        }
    }
    Block& block = ioBlocks[inPlace.block];
    block.insert(At(block, inPlace.slot), std::move(slot));
}

void EraseNode(PropNodeBlocks& ioBlocks, NodePlace const& inPlace) noexcept {
    Block& block = ioBlocks[inPlace.block];
    block.erase(At(block, inPlace.slot));
    if (block.empty()) {
        ioBlocks.erase(At(ioBlocks, inPlace.block));
        return;
    }
    Join(ioBlocks, inPlace.block);
    if (inPlace.block > 0) {
        Join(ioBlocks, inPlace.block - 1);
    }
}

} // namespace brindle::proplist::impl
