#pragma once

#include "host/layout/NodeDescription.h"

#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/ISeparator.h>
#include <brindle/arrange/Single.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// The client's side of the layout: objects that state to the engine what they need, and remember
/// where it placed them.

namespace brindle::host::layout {

/// Something to draw, with the place that the layout gave it.
struct Shape {
    enum class Kind { kLeaf, kGroup, kSeparator };

    Kind kind;
    geom::RectT<float> place; ///< of a leaf, without margins; of a group, around all its children
    MarginsDescription margins = {};
    Role role = Role::kButton; ///< of a leaf
    std::string label = {};    ///< of a leaf or a group
    std::uint32_t key = 0;     ///< of a leaf or a group, among its siblings
    std::size_t level = 0;     ///< of a leaf or a group: how many groups it stands in
    bool isPlaced = true;      ///< false for a node that the layout had to leave out
};

geom::RectT<float> WithMargins(geom::RectT<float> const& inRect,
                               MarginsDescription const& inMargins);

/// The smallest rectangle that contains both.
geom::RectT<float> United(geom::RectT<float> const& inLHS, geom::RectT<float> const& inRHS);

/// A node of the tree. A group owns its children.
class Node {
public:
    Node() = default;
    Node(Node const&) = delete;
    Node& operator=(Node const&) = delete;
    virtual ~Node() = default;

    virtual arrange::IArrangeable& Arrangeable() = 0;
    virtual arrange::IArrangeable const& Arrangeable() const = 0;
    /// Appends the shapes of this node and what it contains, from back to front. `inLevel` is the
    /// number of groups around the node.
    virtual void AppendShapes(std::vector<Shape>& ioShapes, std::size_t inLevel) const = 0;
};

class LeafNode final : public Node, public arrange::Single {
public:
    explicit LeafNode(NodeDescription&& inDescription);

    arrange::IArrangeable& Arrangeable() override { return *this; }
    arrange::IArrangeable const& Arrangeable() const override { return *this; }
    void AppendShapes(std::vector<Shape>& ioShapes, std::size_t inLevel) const override;

    float BestWidth() const override { return mDescription.width.best; }
    float BestHeight() const override { return mDescription.height.best; }
    float MinWidth() const override;
    float MinHeight() const override;
    bool HorizontallyExpandable() const override { return mDescription.width.isExpandable; }
    bool VerticallyExpandable() const override { return mDescription.height.isExpandable; }
    float ExpandedWidth(float inAvailable) const override;
    float ExpandedHeight(float inAvailable) const override;
    float LeftMargin() const override { return mDescription.margins.left; }
    float TopMargin() const override { return mDescription.margins.top; }
    float RightMargin() const override { return mDescription.margins.right; }
    float BottomMargin() const override { return mDescription.margins.bottom; }
    geom::PointT<float> ArrangeContent(geom::RectT<float> const& inRect) override;

private:
    NodeDescription mDescription;
    geom::RectT<float> mPlace;
    bool mIsPlaced = false;
};

/// A separator that is a line in the middle of its gap.
class SeparatorLine final : public arrange::ISeparator {
public:
    void Place(arrange::SeparatorOrientation inOrientation,
               geom::RectT<float> const& inGap) override;
    geom::RectT<float> const& Line() const { return mLine; }

private:
    geom::RectT<float> mLine;
};

class GroupNode final : public Node, public arrange::DynamicGroup {
public:
    explicit GroupNode(NodeDescription&& inDescription);

    arrange::IArrangeable& Arrangeable() override { return *Group(); }
    arrange::IArrangeable const& Arrangeable() const override { return *Group(); }
    void AppendShapes(std::vector<Shape>& ioShapes, std::size_t inLevel) const override;

    /// Takes effect with the next arrangement.
    void SetAlignment(arrange::AlignmentHorizontal inHorizontal,
                      arrange::AlignmentVertical inVertical);

    bool
    VisitChildren(boost::function<bool(arrange::IArrangeable const&)> inFunction) const override;
    bool VisitChildren(boost::function<bool(arrange::IArrangeable&)> inFunction) override;
    float HorizontalSpacing() const override { return mDescription.spacing.x; }
    float VerticalSpacing() const override { return mDescription.spacing.y; }
    arrange::AlignmentHorizontal HorizontalAlignment() const override {
        return mDescription.horizontalAlignment;
    }
    arrange::AlignmentVertical VerticalAlignment() const override {
        return mDescription.verticalAlignment;
    }
    float LeftMargin() const override { return mDescription.margins.left; }
    float TopMargin() const override { return mDescription.margins.top; }
    float RightMargin() const override { return mDescription.margins.right; }
    float BottomMargin() const override { return mDescription.margins.bottom; }
    arrange::ISeparator* BuildSeparator() override;
    void ClearSeparators() override { mSeparators.clear(); }

private:
    NodeDescription mDescription;
    std::vector<std::unique_ptr<Node>> mChildren;
    std::vector<std::unique_ptr<SeparatorLine>> mSeparators;
};

/// Makes a `GroupNode` of a description with a kind, a `LeafNode` of any other.
std::unique_ptr<Node> MakeNode(NodeDescription&& inDescription);

} // namespace brindle::host::layout
