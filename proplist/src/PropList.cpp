#include "proplist/src/PropNodes.h"

#include <brindle/proplist/PropList.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace brindle::proplist {

namespace {

using impl::PropListArrayNode;
using impl::PropListNode;
using impl::PropNodeBase;
using impl::PropNodes;
using impl::ScalarPropNode;

template <typename Node>
Node* NodeCast(PropNodeBase* inNode) noexcept {
    return inNode->GetType() == Node::kType ? static_cast<Node*>(inNode) : nullptr;
}

template <typename Node>
Node* Find(PropNodes const& inNodes, UTF8String const& inKey) noexcept {
    auto const found = inNodes.find(inKey);
    return found == inNodes.end() ? nullptr : NodeCast<Node>(found->second.get());
}

template <typename Node, typename Value>
bool Read(PropNodes const& inNodes, UTF8String const& inKey, Value& ioValue) {
    Node const* const node = Find<Node>(inNodes, inKey);
    if (node == nullptr) {
        return false;
    }
    node->ReadInto(ioValue);
    return true;
}

/// Has the node, if there is one of its class under the key, updated, and else stores a new one.
template <typename Node, typename Update, typename... Arguments>
Node* Store(PropNodes& ioNodes, UTF8String const& inKey, Update inUpdate,
            Arguments const&... inArguments) {
    auto const place = ioNodes.lower_bound(inKey);
    bool const isThere = place != ioNodes.end() && !ioNodes.key_comp()(inKey, place->first);
    if (isThere) {
        if (auto* const node = NodeCast<Node>(place->second.get())) {
            inUpdate(*node);
            return node;
        }
    }
    // The node comes first, so that a key is never there without one.
    auto owner = std::make_unique<Node>(inArguments...);
    Node* const node = owner.get();
    if (isThere) {
        place->second = std::move(owner);
    } else {
        ioNodes.emplace_hint(place, inKey, std::move(owner));
    }
    return node;
}

template <typename Node, typename Value>
void Write(PropNodes& ioNodes, UTF8String const& inKey, Value const& inValue) {
    Store<Node>(
        ioNodes, inKey, [&inValue](Node& ioNode) { ioNode.Assign(inValue); }, inValue);
}

} // namespace

bool impl::KeyOrder::operator()(UTF8String const& inLHS, UTF8String const& inRHS) const noexcept {
    int const order = std::memcmp(inLHS.data(), inRHS.data(), std::min(inLHS.size(), inRHS.size()));
    return order != 0 ? order < 0 : inLHS.size() < inRHS.size();
}

PropList::PropList() noexcept = default;

PropList::~PropList() {
    DeleteNodes();
}

#define DEFINE_VALUE_ACCESS(T)                                                                     \
    bool PropList::GetValue(UTF8String const& inKey, std::list<T>& ioValues) const {               \
        return Read<PropListArrayNode<T>>(mNodes, inKey, ioValues);                                \
    }                                                                                              \
    bool PropList::GetValue(UTF8String const& inKey, T& outValue) const {                          \
        return Read<ScalarPropNode<T>>(mNodes, inKey, outValue);                                   \
    }                                                                                              \
    void PropList::SetValue(UTF8String const& inKey, std::list<T> const& inValues) {               \
        Write<PropListArrayNode<T>>(mNodes, inKey, inValues);                                      \
    }                                                                                              \
    void PropList::SetValue(UTF8String const& inKey, T const& inValue) {                           \
        Write<ScalarPropNode<T>>(mNodes, inKey, inValue);                                          \
    }

DEFINE_VALUE_ACCESS(double)
DEFINE_VALUE_ACCESS(float)
DEFINE_VALUE_ACCESS(std::uint64_t)
DEFINE_VALUE_ACCESS(std::int64_t)
DEFINE_VALUE_ACCESS(std::int32_t)
DEFINE_VALUE_ACCESS(std::uint32_t)
DEFINE_VALUE_ACCESS(std::uint16_t)
DEFINE_VALUE_ACCESS(bool)
DEFINE_VALUE_ACCESS(UTF8String)
DEFINE_VALUE_ACCESS(UTF16String)

#undef DEFINE_VALUE_ACCESS

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
    auto const clear = [&toDelete](PropNodes& ioNodes) {
        for (auto& [key, owner] : ioNodes) {
            if (auto* const list = NodeCast<PropListNode>(owner.get())) {
                owner.release();
                list->mNextToDelete = std::move(toDelete);
                toDelete.reset(list);
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
    for (auto const& [key, node] : mNodes) {
        names.push_back(key);
    }
    ioNames.splice(ioNames.end(), names);
}

PropListPropertyType PropList::GetPropertyType(UTF8String const& inKey) const {
    auto const found = mNodes.find(inKey);
    return found == mNodes.end() ? kPropertyType_None : found->second->GetType();
}

bool PropList::RemoveValue(UTF8String const& inKey) {
    return mNodes.erase(inKey) != 0;
}

} // namespace brindle::proplist
