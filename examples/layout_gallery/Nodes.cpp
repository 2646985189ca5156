#include "Nodes.h"

#include <algorithm>
#include <utility>

namespace layout_gallery {

using namespace brindle::arrange;
using brindle::geom::PointT;
using brindle::geom::RectT;

namespace {

float Minimum(ExtentDescription const& inExtent) {
    return inExtent.minimum.value_or(inExtent.best);
}

float Expanded(ExtentDescription const& inExtent, float inAvailable) {
    if (!inExtent.isExpandable) {
        return inExtent.best;
    }
    return std::max(Minimum(inExtent), std::min(inAvailable, inExtent.maximum));
}

} // namespace

LeafNode::LeafNode(NodeDescription inDescription) : mDescription(std::move(inDescription)) {}

void LeafNode::AppendShapes(std::vector<Shape>& ioShapes) const {
    ioShapes.push_back(
        {Shape::Kind::kLeaf, mPlace, mDescription.margins, mDescription.role, mDescription.label});
}

float LeafNode::MinWidth() const {
    return Minimum(mDescription.width);
}

float LeafNode::MinHeight() const {
    return Minimum(mDescription.height);
}

float LeafNode::ExpandedWidth(float inAvailable) const {
    return Expanded(mDescription.width, inAvailable);
}

float LeafNode::ExpandedHeight(float inAvailable) const {
    return Expanded(mDescription.height, inAvailable);
}

PointT<float> LeafNode::ArrangeContent(RectT<float> const& inRect) {
    mPlace = inRect;
    // What follows is placed by this size, so the margins count.
    return {LeftMargin() + inRect.width + RightMargin(),
            TopMargin() + inRect.height + BottomMargin()};
}

void SeparatorLine::Place(SeparatorOrientation inOrientation, RectT<float> const& inGap) {
    mLine = inGap;
    if (inOrientation == kSeparatorOrientation_InRow) {
        mLine.x += inGap.width / 2;
        mLine.width = 0;
    } else {
        mLine.y += inGap.height / 2;
        mLine.height = 0;
    }
}

GroupNode::GroupNode(NodeDescription inDescription)
    : DynamicGroup(nullptr, inDescription.kind.value()), mDescription(std::move(inDescription)) {
    for (NodeDescription& child : mDescription.children) {
        mChildren.push_back(MakeNode(std::move(child)));
    }
    mDescription.children.clear();
}

void GroupNode::AppendShapes(std::vector<Shape>& ioShapes) const {
    ioShapes.push_back({Shape::Kind::kGroup, mPlace, mDescription.margins});
    for (auto const& child : mChildren) {
        child->AppendShapes(ioShapes);
    }
    for (auto const& separator : mSeparators) {
        ioShapes.push_back({Shape::Kind::kSeparator, separator->Line()});
    }
}

void GroupNode::SetAlignment(AlignmentHorizontal inHorizontal, AlignmentVertical inVertical) {
    mDescription.horizontalAlignment = inHorizontal;
    mDescription.verticalAlignment = inVertical;
}

bool GroupNode::VisitChildren(boost::function<bool(IArrangeable const&)> inFunction) const {
    return std::all_of(mChildren.begin(), mChildren.end(), [&](auto const& inChild) {
        return inFunction(std::as_const(*inChild).Arrangeable());
    });
}

bool GroupNode::VisitChildren(boost::function<bool(IArrangeable&)> inFunction) {
    return std::all_of(mChildren.begin(), mChildren.end(),
                       [&](auto const& inChild) { return inFunction(inChild->Arrangeable()); });
}

ISeparator* GroupNode::BuildSeparator() {
    if (!mDescription.hasSeparators) {
        return nullptr;
    }
    return mSeparators.emplace_back(std::make_unique<SeparatorLine>()).get();
}

void GroupNode::Position(PointT<float> const& inPosition) {
    mPlace.x = inPosition.x;
    mPlace.y = inPosition.y;
}

void GroupNode::SetDimensions(PointT<float> const& inSize) {
    mPlace.width = inSize.x;
    mPlace.height = inSize.y;
}

std::unique_ptr<Node> MakeNode(NodeDescription inDescription) {
    if (inDescription.kind) {
        return std::make_unique<GroupNode>(std::move(inDescription));
    }
    return std::make_unique<LeafNode>(std::move(inDescription));
}

} // namespace layout_gallery
