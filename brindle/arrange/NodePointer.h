#pragma once

#include <memory>

namespace brindle::arrange::impl {

/// Points to a node of a tree without keeping it, and reads as null once the node is gone. So the
/// nodes of a tree may go in any order: nothing that is left refers to them.
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
    /// Whether there was a node.
    bool IsGone() const noexcept { return mIsAlive != nullptr && !*mIsAlive; }

private:
    Node* mNode = nullptr;
    std::shared_ptr<bool const> mIsAlive;
};

} // namespace brindle::arrange::impl
