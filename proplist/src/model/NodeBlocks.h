#pragma once

#include <brindle/proplist/PropList.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

// A sorted map of nodes, as blocks of slots. A search goes by the first bytes of the keys, which
// stand in the slots, and looks into nodes only where those are equal; a walk in order finds the
// next nodes without visiting any. No block is empty.
namespace brindle::proplist::impl {

class PropNodeBase;

/// The first sixteen bytes of a key, padded with zeros, as numbers that compare like them.
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
    bool isThere; ///< or the place is where the key would go
};

NodePlace PlaceOf(PropNodeBlocks const& inBlocks, UTF8String const& inKey) noexcept;

/// The node under the key, or null.
PropNodeBase* FindNode(PropNodeBlocks const& inBlocks, UTF8String const& inKey) noexcept;

/// Puts the node where its key goes. If this throws, nothing has changed.
void InsertNode(PropNodeBlocks& ioBlocks, NodePlace inPlace, std::unique_ptr<PropNodeBase> inNode);

void EraseNode(PropNodeBlocks& ioBlocks, NodePlace const& inPlace) noexcept;

std::size_t CountNodes(PropNodeBlocks const& inBlocks) noexcept;

/// Goes through nodes in order. They must not be inserted or erased meanwhile.
class NodeWalk {
public:
    explicit NodeWalk(PropNodeBlocks const& inBlocks) noexcept
        : mBlock(inBlocks.data()), mEnd(inBlocks.data() + inBlocks.size()) {}

    /// Null at the end.
    PropNodeBase const* Next() noexcept {
        if (mBlock == mEnd) {
            return nullptr;
        }
        // Nodes lie anywhere in memory, so several are fetched at a time.
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
