#pragma once

#include <brindle/proplist/PropList.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

// A sorted map of nodes, as blocks of slots. Each slot has the first bytes of its node's key: a
// search compares those, and reads a node's whole key only where they are equal. A walk in order
// takes the next nodes from the slots, without following a link in a node. No block is empty.
namespace brindle::proplist::impl {

class PropNodeBase;

/// The first sixteen bytes of a key, padded with zeros, as two numbers that compare like the bytes.
struct KeyStart {
    std::uint64_t high;
    std::uint64_t low;
};

struct PropNodeSlot {
    KeyStart keyStart;
    std::unique_ptr<PropNodeBase> node;
};

struct NodePlace {
    std::size_t block;
    std::size_t slot;
    bool isThere; ///< false: this is where a node of the key has to be inserted
};

NodePlace PlaceOf(PropNodeBlocks const& inBlocks, UTF8String const& inKey) noexcept;

/// The node under the key, or null.
PropNodeBase* FindNode(PropNodeBlocks const& inBlocks, UTF8String const& inKey) noexcept;

/// Inserts the node at the place that `PlaceOf` gave for its key. If this throws, nothing has
/// changed.
void InsertNode(PropNodeBlocks& ioBlocks, NodePlace inPlace, std::unique_ptr<PropNodeBase> inNode);

void EraseNode(PropNodeBlocks& ioBlocks, NodePlace const& inPlace) noexcept;

std::size_t CountNodes(PropNodeBlocks const& inBlocks) noexcept;

/// Visits nodes in order. No node may be inserted or erased meanwhile.
class NodeWalk {
public:
    explicit NodeWalk(PropNodeBlocks const& inBlocks) noexcept
        : mBlock(inBlocks.data()), mEnd(inBlocks.data() + inBlocks.size()) {}

    /// The next node; null at the end.
    PropNodeBase const* Next() noexcept {
        if (mBlock == mEnd) {
            return nullptr;
        }
        // Nodes are scattered in memory, so those ahead are fetched early.
        constexpr std::size_t kAhead = 8;
        if (mSlot + kAhead < mBlock->size()) {
            __builtin_prefetch((*mBlock)[mSlot + kAhead].node.get());
        }
        PropNodeBase const* const node = (*mBlock)[mSlot].node.get();
        if (++mSlot == mBlock->size()) {
            ++mBlock;
            mSlot = 0;
        }
        return node;
    }

private:
    std::vector<PropNodeSlot> const* mBlock;
    std::vector<PropNodeSlot> const* mEnd;
    std::size_t mSlot = 0;
};

} // namespace brindle::proplist::impl
