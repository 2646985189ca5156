#include "proplist/src/model/NodeBlocks.h"

#include "proplist/src/model/PropNodes.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>
#include <vector>

namespace brindle::proplist::impl {

namespace {

using Block = std::vector<PropNodeSlot>;

constexpr std::size_t kMostSlots = 256;

constexpr std::size_t kWordSize = sizeof(std::uint64_t);

/// Eight bytes as a number that compares like them.
std::uint64_t WordAt(std::uint8_t const* inBytes) noexcept {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < kWordSize; ++i) {
        word = word << 8 | inBytes[i];
    }
    return word;
}

KeyStart StartOf(UTF8String const& inKey) noexcept {
    std::uint8_t bytes[2 * kWordSize] = {};
    std::memcpy(bytes, inKey.data(), std::min(inKey.size(), sizeof bytes));
    return {WordAt(bytes), WordAt(bytes + kWordSize)};
}

bool operator==(KeyStart const& inLHS, KeyStart const& inRHS) noexcept {
    return inLHS.high == inRHS.high && inLHS.low == inRHS.low;
}

/// Has no branch, so that a search has none: half of its branches would be mispredicted.
bool operator<(KeyStart const& inLHS, KeyStart const& inRHS) noexcept {
    auto const less = static_cast<unsigned>(inLHS.high < inRHS.high);
    auto const same = static_cast<unsigned>(inLHS.high == inRHS.high);
    return (less | (same & static_cast<unsigned>(inLHS.low < inRHS.low))) != 0;
}

int Compare(PropNodeSlot const& inSlot, KeyStart const& inStart, UTF8String const& inKey) noexcept {
    if (!(inSlot.keyStart == inStart)) {
        return inSlot.keyStart < inStart ? -1 : 1;
    }
    UTF8String const& key = inSlot.node->GetKey();
    std::size_t const common = std::min(key.size(), inKey.size());
    std::size_t const start = std::min(common, 2 * kWordSize);
    int const order = std::memcmp(key.data() + start, inKey.data() + start, common - start);
    return order != 0 ? order : key.size() == inKey.size() ? 0 : key.size() < inKey.size() ? -1 : 1;
}

template <typename Vector>
auto At(Vector& ioVector, std::size_t inIndex) noexcept {
    return ioVector.begin() + static_cast<std::ptrdiff_t>(inIndex);
}

/// The index of the only block that can have the key.
std::size_t BlockOf(PropNodeBlocks const& inBlocks, KeyStart const& inStart,
                    UTF8String const& inKey) noexcept {
    auto const second = std::next(inBlocks.begin());
    auto const beyond = std::partition_point(second, inBlocks.end(), [&](Block const& inBlock) {
        return Compare(inBlock.front(), inStart, inKey) <= 0;
    });
    return static_cast<std::size_t>(beyond - second);
}

/// The index of the first slot whose key does not start with less.
std::size_t LowerBound(Block const& inBlock, KeyStart const& inStart) noexcept {
    PropNodeSlot const* first = inBlock.data();
    std::size_t count = inBlock.size();
    while (count > 1) {
        std::size_t const half = count / 2;
        first += first[half - 1].keyStart < inStart ? half : 0;
        count -= half;
    }
    return static_cast<std::size_t>(first - inBlock.data()) + (first->keyStart < inStart ? 1 : 0);
}

/// Moves the upper half of a full block into a new block behind it.
void Split(PropNodeBlocks& ioBlocks, std::size_t inBlock) {
    Block upper;
    upper.reserve(kMostSlots);
    ioBlocks.insert(At(ioBlocks, inBlock + 1), std::move(upper));
    Block& lower = ioBlocks[inBlock];
    auto const half = At(lower, kMostSlots / 2);
    std::move(half, lower.end(), std::back_inserter(ioBlocks[inBlock + 1]));
    lower.erase(half, lower.end());
}

/// Merges the block with its successor, if both together fill at most half a block and the first
/// has the capacity.
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
    KeyStart const start = StartOf(inKey);
    std::size_t const blockIndex = BlockOf(inBlocks, start, inKey);
    Block const& block = inBlocks[blockIndex];
    std::size_t first = LowerBound(block, start);
    std::size_t end = first;
    for (std::size_t step = 1; end < block.size() && block[end].keyStart == start; step *= 2) {
        end = std::min(end + step, block.size());
    }
    while (first != end) {
        std::size_t const middle = first + (end - first) / 2;
        int const order = Compare(block[middle], start, inKey);
        if (order == 0) {
            return {blockIndex, middle, true};
        }
        order < 0 ? first = middle + 1 : end = middle;
    }
    return {blockIndex, first, false};
}

PropNodeBase* FindNode(PropNodeBlocks const& inBlocks, UTF8String const& inKey) noexcept {
    NodePlace const place = PlaceOf(inBlocks, inKey);
    return place.isThere ? inBlocks[place.block][place.slot].node.get() : nullptr;
}

void InsertNode(PropNodeBlocks& ioBlocks, NodePlace inPlace, std::unique_ptr<PropNodeBase> inNode) {
    PropNodeSlot slot{StartOf(inNode->GetKey()), std::move(inNode)};
    bool const isFull = !ioBlocks.empty() && ioBlocks[inPlace.block].size() == kMostSlots;
    bool const isLast = inPlace.block + 1 >= ioBlocks.size() &&
                        (ioBlocks.empty() || inPlace.slot == ioBlocks.back().size());
    if (ioBlocks.empty() || (isFull && isLast)) {
        // Appending starts a new block, so that keys set in ascending order fill their blocks.
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

std::size_t CountNodes(PropNodeBlocks const& inBlocks) noexcept {
    std::size_t count = 0;
    for (Block const& block : inBlocks) {
        count += block.size();
    }
    return count;
}

} // namespace brindle::proplist::impl
