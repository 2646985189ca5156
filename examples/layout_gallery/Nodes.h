#pragma once

#include "NodeDescription.h"

#include <brindle/arrange/DynamicGroup.h>
#include <brindle/arrange/ISeparator.h>
#include <brindle/arrange/Single.h>

#include <memory>
#include <string>
#include <vector>

/// The client's side of the layout: objects that tell the engine what they need and remember the
/// place that it gave them.

namespace layout_gallery {

/// Something to draw, where the layout put it.
struct Shape {
    enum class Kind { kLeaf, kGroup, kSeparator };

    Kind kind;
    brindle::geom::RectT<float> place; ///< without the margins
    MarginsDescription margins = {};
    Role role = Role::kButton; ///< of a leaf
    std::string label = {};
};

/// A part of the tree. A group owns its children.
class Node {
public:
    Node() = default;
    Node(Node const&) = delete;
    Node& operator=(Node const&) = delete;
    virtual ~Node() = default;

    virtual brindle::arrange::IArrangeable& Arrangeable() = 0;
    virtual brindle::arrange::IArrangeable const& Arrangeable() const = 0;
    /// Adds what is to be drawn of this node, from back to front.
    virtual void AppendShapes(std::vector<Shape>& ioShapes) const = 0;
};

class LeafNode final : public Node, public brindle::arrange::Single {
public:
    explicit LeafNode(NodeDescription inDescription);

    brindle::arrange::IArrangeable& Arrangeable() override { return *this; }
    brindle::arrange::IArrangeable const& Arrangeable() const override { return *this; }
    void AppendShapes(std::vector<Shape>& ioShapes) const override;

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
    brindle::geom::PointT<float> ArrangeContent(brindle::geom::RectT<float> const& inRect) override;

private:
    NodeDescription mDescription;
    brindle::geom::RectT<float> mPlace;
};

/// A line in the middle of a gap.
class SeparatorLine final : public brindle::arrange::ISeparator {
public:
    void Place(brindle::arrange::SeparatorOrientation inOrientation,
               brindle::geom::RectT<float> const& inGap) override;
    brindle::geom::RectT<float> const& Line() const { return mLine; }

private:
    brindle::geom::RectT<float> mLine;
};

class GroupNode final : public Node, public brindle::arrange::DynamicGroup {
public:
    explicit GroupNode(NodeDescription inDescription);

    brindle::arrange::IArrangeable& Arrangeable() override { return *Group(); }
    brindle::arrange::IArrangeable const& Arrangeable() const override { return *Group(); }
    void AppendShapes(std::vector<Shape>& ioShapes) const override;

    /// The next arrangement aligns its content like this.
    void SetAlignment(brindle::arrange::AlignmentHorizontal inHorizontal,
                      brindle::arrange::AlignmentVertical inVertical);

    bool VisitChildren(
        boost::function<bool(brindle::arrange::IArrangeable const&)> inFunction) const override;
    bool VisitChildren(boost::function<bool(brindle::arrange::IArrangeable&)> inFunction) override;
    float HorizontalSpacing() const override { return mDescription.spacing.x; }
    float VerticalSpacing() const override { return mDescription.spacing.y; }
    brindle::arrange::AlignmentHorizontal HorizontalAlignment() const override {
        return mDescription.horizontalAlignment;
    }
    brindle::arrange::AlignmentVertical VerticalAlignment() const override {
        return mDescription.verticalAlignment;
    }
    float LeftMargin() const override { return mDescription.margins.left; }
    float TopMargin() const override { return mDescription.margins.top; }
    float RightMargin() const override { return mDescription.margins.right; }
    float BottomMargin() const override { return mDescription.margins.bottom; }
    brindle::arrange::ISeparator* BuildSeparator() override;
    void ClearSeparators() override { mSeparators.clear(); }
    void Position(brindle::geom::PointT<float> const& inPosition) override;
    void SetDimensions(brindle::geom::PointT<float> const& inSize) override;

private:
    NodeDescription mDescription;
    std::vector<std::unique_ptr<Node>> mChildren;
    std::vector<std::unique_ptr<SeparatorLine>> mSeparators;
    brindle::geom::RectT<float> mPlace;
};

/// The object of a description that has no kind is a leaf, otherwise it is a group.
std::unique_ptr<Node> MakeNode(NodeDescription inDescription);

} // namespace layout_gallery
