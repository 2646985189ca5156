#include <brindle/proplist/PropList.h>

#include "proplist/src/model/PropNodes.h"

#include <list>
#include <memory>
#include <utility>

namespace brindle::proplist {

namespace {

using impl::PropListArrayNode;
using impl::PropListNode;
using impl::PropNodeBase;
using impl::PropNodeBlocks;
using impl::SimpleTypeArrayNode;

template <typename Node>
Node* NodeCast(PropNodeBase* inNode) noexcept {
    return inNode->GetType() == Node::kType ? static_cast<Node*>(inNode) : nullptr;
}

template <typename Node>
Node* Find(PropNodeBlocks const& inNodes, UTF8String const& inKey) noexcept {
    PropNodeBase* const node = FindNode(inNodes, inKey);
    return node == nullptr ? nullptr : NodeCast<Node>(node);
}

template <typename Node, typename Value>
bool Read(PropNodeBlocks const& inNodes, UTF8String const& inKey, Value& ioValue) {
    Node const* const node = Find<Node>(inNodes, inKey);
    if (node == nullptr) {
        return false;
    }
    node->ReadInto(ioValue);
    return true;
}

/// Updates the node under the key if it is of this class; otherwise stores a new one in its place.
template <typename Node, typename Update, typename... Arguments>
Node* Store(PropNodeBlocks& ioNodes, UTF8String const& inKey, Update inUpdate,
            Arguments const&... inArguments) {
    impl::NodePlace const place = PlaceOf(ioNodes, inKey);
    auto* const there = place.isThere ? &ioNodes[place.block][place.slot].node : nullptr;
    if (there != nullptr) {
        if (auto* const node = NodeCast<Node>(there->get())) {
            inUpdate(*node);
            return node;
        }
    }
    auto owner = std::make_unique<Node>(inKey, inArguments...);
    Node* const node = owner.get();
    if (there != nullptr) {
        *there = std::move(owner);
    } else {
        InsertNode(ioNodes, place, std::move(owner));
    }
    return node;
}

template <typename Node, typename Value>
void Write(PropNodeBlocks& ioNodes, UTF8String const& inKey, Value const& inValue) {
    Store<Node>(
        ioNodes, inKey, [&inValue](Node& ioNode) { ioNode.Assign(inValue); }, inValue);
}

} // namespace

PropList::PropList() noexcept = default;

PropList::PropList(PropList&& ioOther) noexcept
    : mNodes(std::move(ioOther.mNodes)), mUnreadFile(std::move(ioOther.mUnreadFile)),
      mVersion(std::exchange(ioOther.mVersion, GetCurrentVersion())) {}

PropList& PropList::operator=(PropList&& ioOther) noexcept {
    PropList other(std::move(ioOther)); // which may be nested in this list
    DeleteNodes();
    mNodes.swap(other.mNodes);
    mUnreadFile = std::move(other.mUnreadFile);
    mVersion = other.mVersion;
    return *this;
}

PropList::~PropList() {
    DeleteNodes();
}

#define BRN_VALUE_ACCESS(Name, T, ...)                                                             \
    bool PropList::GetValue(UTF8String const& inKey, std::list<T>& ioValues) const {               \
        return Read<PropListArrayNode<T>>(mNodes, inKey, ioValues);                                \
    }                                                                                              \
    bool PropList::GetValue(UTF8String const& inKey, T& outValue) const {                          \
        return Read<SimpleTypeArrayNode<T>>(mNodes, inKey, outValue);                              \
    }                                                                                              \
    void PropList::SetValue(UTF8String const& inKey, std::list<T> const& inValues) {               \
        Write<PropListArrayNode<T>>(mNodes, inKey, inValues);                                      \
    }                                                                                              \
    void PropList::SetValue(UTF8String const& inKey, T const& inValue) {                           \
        Write<SimpleTypeArrayNode<T>>(mNodes, inKey, inValue);                                     \
    }

BRN_PROPERTY_TYPES(BRN_VALUE_ACCESS)

#undef BRN_VALUE_ACCESS

PropList* PropList::GetSubList(UTF8String const& inKey) const {
    auto* const node = Find<PropListNode>(mNodes, inKey);
    return node == nullptr ? nullptr : &node->mList;
}

PropList* PropList::NewSubList(UTF8String const& inKey) {
    return &Store<PropListNode>(mNodes, inKey, [](PropListNode&) {})->mList;
}

void PropList::Clear() {
    DeleteNodes();
}

void PropList::DeleteNodes() noexcept {
    std::unique_ptr<PropListNode> toDelete;
    auto const clear = [&toDelete](PropNodeBlocks& ioNodes) {
        for (auto& block : ioNodes) {
            for (auto& slot : block) {
                if (auto* const list = NodeCast<PropListNode>(slot.node.get())) {
                    slot.node.release();
                    list->mNextToDelete = std::move(toDelete);
                    toDelete.reset(list);
                }
            }
        }
        ioNodes.clear();
    };
    clear(mNodes);
    while (toDelete != nullptr) {
        auto const list = std::exchange(toDelete, std::move(toDelete->mNextToDelete));
        clear(list->mList.mNodes);
    }
}

void PropList::GetPropertyNames(std::list<UTF8String>& ioNames) const {
    std::list<UTF8String> names;
    impl::NodeWalk walk(mNodes);
    while (auto const* const node = walk.Next()) {
        names.push_back(node->GetKey());
    }
    ioNames.splice(ioNames.end(), names);
}

bool PropList::Has(PropertyKey const& inKey) const {
    return GetPropertyType(inKey) != kPropertyType_None;
}

PropListPropertyType PropList::GetPropertyType(UTF8String const& inKey) const {
    PropNodeBase const* const node = FindNode(mNodes, inKey);
    return node == nullptr ? kPropertyType_None : node->GetType();
}

bool PropList::RemoveValue(UTF8String const& inKey) {
    impl::NodePlace const place = PlaceOf(mNodes, inKey);
    if (place.isThere) {
        EraseNode(mNodes, place);
    }
    return place.isThere;
}

} // namespace brindle::proplist
