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

constexpr std::size_t kWordSize = sizeof(std::uint64_t);

/// Bytes as a number that compares like them.
std::uint64_t WordAt(std::uint8_t const* inBytes) noexcept {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < kWordSize; ++i) {
        word = word << 8 | inBytes[i];
    }
    return word;
}

std::uint64_t KeyStart(UTF8String const& inKey) noexcept {
    if (inKey.size() >= kWordSize) {
        return WordAt(inKey.data());
    }
    std::uint8_t padded[kWordSize]{};
    std::copy(inKey.begin(), inKey.end(), padded);
    return WordAt(padded);
}

int ThreeWay(std::uint64_t inLHS, std::uint64_t inRHS) noexcept {
    return inLHS < inRHS ? -1 : static_cast<int>(inLHS > inRHS);
}

int Compare(UTF8String const& inLHS, UTF8String const& inRHS) noexcept {
    std::uint8_t const* const left = inLHS.data();
    std::uint8_t const* const right = inRHS.data();
    std::size_t const common = std::min(inLHS.size(), inRHS.size());
    if (common < kWordSize) {
        int const order = std::memcmp(left, right, common);
        return order != 0 ? order : ThreeWay(inLHS.size(), inRHS.size());
    }
    // Most keys are short, and the last word may overlap the one before it.
    std::size_t const last = common - kWordSize;
    std::size_t at = 0;
    while (at < last && WordAt(left + at) == WordAt(right + at)) {
        at += kWordSize;
    }
    at = std::min(at, last);
    int const order = ThreeWay(WordAt(left + at), WordAt(right + at));
    return order != 0 ? order : ThreeWay(inLHS.size(), inRHS.size());
}

int Compare(PropNodeSlot const& inSlot, std::uint64_t inStart, UTF8String const& inKey) noexcept {
    return inSlot.keyStart != inStart ? ThreeWay(inSlot.keyStart, inStart)
                                      : Compare(inSlot.node->GetKey(), inKey);
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
        return Compare(inBlock.front(), inStart, inKey) <= 0;
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
    std::size_t first = 0;
    std::size_t end = block.size();
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
