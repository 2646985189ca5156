#include "proplist/src/model/PropListAccess.h"
#include "proplist/src/model/PropNodes.h"

#include <brindle/proplist/PropList.h>

#include <memory>
#include <utility>
#include <vector>

namespace brindle::proplist {

namespace {

using impl::NodeWalk;
using impl::PropListAccess;
using impl::PropListNode;

PropList const& ListOf(impl::PropNodeBase const& inNode) noexcept {
    return static_cast<PropListNode const&>(inNode).mList;
}

/// Copies are to be made of these lists into those.
using OpenLists = std::vector<std::pair<PropList const*, PropList*>>;

/// Copies what the list holds, with empty lists for the nested ones, which are added to `ioOpen`.
void CopyNodes(PropList const& inFrom, PropList& outTo, OpenLists& ioOpen) {
    PropListAccess::SetVersion(outTo, inFrom.GetVersion());
    auto const& blocks = PropListAccess::Nodes(inFrom);
    auto& copies = PropListAccess::Nodes(outTo);
    copies.reserve(blocks.size());
    for (auto const& block : blocks) {
        std::vector<impl::PropNodeSlot> copy;
        copy.reserve(block.size());
        for (auto const& slot : block) {
            copy.push_back({slot.keyStart, slot.node->Clone()});
            if (slot.node->GetType() == PropListNode::kType) {
                auto& node = static_cast<PropListNode&>(*copy.back().node);
                ioOpen.emplace_back(&ListOf(*slot.node), &node.mList);
            }
        }
        copies.push_back(std::move(copy));
    }
}

} // namespace

PropList PropList::Clone() const {
    PropList copy;
    if (mUnreadFile != nullptr) {
        copy.mUnreadFile = std::make_unique<UTF16String>(*mUnreadFile);
    }
    OpenLists open{{this, &copy}};
    while (!open.empty()) {
        auto const [from, to] = open.back();
        open.pop_back();
        CopyNodes(*from, *to, open);
    }
    return copy;
}

bool operator==(PropList const& inLHS, PropList const& inRHS) {
    std::vector<std::pair<PropList const*, PropList const*>> open{{&inLHS, &inRHS}};
    while (!open.empty()) {
        auto const [left, right] = open.back();
        open.pop_back();
        NodeWalk lefts(PropListAccess::Nodes(*left));
        NodeWalk rights(PropListAccess::Nodes(*right));
        for (;;) {
            auto const* const leftNode = lefts.Next();
            auto const* const rightNode = rights.Next();
            if (leftNode == nullptr || rightNode == nullptr) {
                if (leftNode != rightNode) {
                    return false;
                }
                break;
            }
            if (leftNode->GetType() != rightNode->GetType() ||
                leftNode->GetKey() != rightNode->GetKey() || !leftNode->HasValueOf(*rightNode)) {
                return false;
            }
            if (leftNode->GetType() == PropListNode::kType) {
                open.emplace_back(&ListOf(*leftNode), &ListOf(*rightNode));
            }
        }
    }
    return true;
}

} // namespace brindle::proplist
