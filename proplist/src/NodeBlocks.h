#pragma once

#include <brindle/proplist/PropList.h>

#include <cstddef>
#include <cstdint>
#include <memory>

// A sorted map of nodes, as blocks of slots. A search goes by the first bytes of the keys, which
// stand in the slots, and looks into nodes only where those are equal; a walk in order finds the
// next nodes without visiting any. No block is empty.
namespace brindle::proplist::impl {

class PropNodeBase;

struct PropNodeSlot {
    std::uint64_t keyStart; ///< the first eight bytes of the key as a number, the first the highest
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

} // namespace brindle::proplist::impl
