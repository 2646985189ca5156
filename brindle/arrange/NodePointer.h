#pragma once

#include <memory>

namespace brindle::arrange::impl {

/// A non-owning pointer to a node that reads as null once the node has been destroyed or retired.
/// It lets the nodes of a tree be destroyed in any order.
template <typename Node>
class NodePointer {
public:
    NodePointer() noexcept = default;
    explicit NodePointer(Node* inNode) : mNode(inNode) {
        if (inNode != nullptr) {
            mIsAlive = inNode->Lifeline();
        }
    }

    Node* Get() const noexcept { return mIsAlive != nullptr && *mIsAlive ? mNode : nullptr; }
    /// Whether there was a node that has been destroyed or retired.
    bool IsGone() const noexcept { return mIsAlive != nullptr && !*mIsAlive; }

private:
    Node* mNode = nullptr;
    std::shared_ptr<bool const> mIsAlive;
};

} // namespace brindle::arrange::impl
