#pragma once

#include <brindle/Export.h>
#include <brindle/arrange/Box.h>
#include <brindle/arrange/FunctionLeaf.h>
#include <brindle/arrange/LayoutDescription.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brindle::arrange {

/// A tree of boxes and leaves made from a description, so that a layout is a file that a program
/// loads, and the program binds its widgets to the leaves by their names.
///
///     LayoutTree tree(ReadLayoutDescription(list));
///     tree.Leaf("start").SetPlace([&](auto const& inRect) { startButton.Move(inRect); });
///     tree.Root().Arrange({0, 0, 640, 480});
///
/// It owns its nodes. The boxes and leaves may be changed in any way.
class BRN_API LayoutTree {
public:
    /// Makes the boxes and leaves of the description, which is not needed afterwards.
    explicit LayoutTree(LayoutDescription const& inDescription);
    LayoutTree(LayoutTree const&) = delete;
    LayoutTree& operator=(LayoutTree const&) = delete;
    ~LayoutTree();

    /// The topmost node, to be arranged. It lives as long as the tree.
    IArrangeable& Root() noexcept { return *mRoot; }
    IArrangeable const& Root() const noexcept { return *mRoot; }

    /// The leaf or the group of this name. They throw `layout_error` if there is none, or none any
    /// more.
    FunctionLeaf& Leaf(std::string_view inName) const;
    AbstractBox& Group(std::string_view inName) const;
    /// The same, but null if there is none.
    FunctionLeaf* FindLeaf(std::string_view inName) const;
    AbstractBox* FindGroup(std::string_view inName) const;

    /// The names in ascending order: a program checks here that it has bound all leaves.
    std::vector<std::string> LeafNames() const;
    std::vector<std::string> GroupNames() const;

    /// Shows or hides the leaf or the group in the group around it. Throws `layout_error` if there
    /// is none of this name; the root is always shown.
    void SetShown(std::string_view inName, bool inIsShown);

private:
    template <typename Node>
    using Names = std::map<std::string, impl::NodePointer<Node>, std::less<>>;

    std::unique_ptr<IArrangeable> MakeNode(LayoutDescription const& inDescription);

    Names<FunctionLeaf> mLeaves;
    Names<AbstractBox> mGroups;
    std::unique_ptr<IArrangeable> mRoot;
};

} // namespace brindle::arrange
