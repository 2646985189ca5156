#include "host/layout/Nodes.h"

#include <algorithm>
#include <utility>

namespace brindle::host::layout {

using namespace arrange;
using geom::PointT;
using geom::RectT;

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

/// Extends the place of a group around a child and its margins.
void Include(Shape const& inChild, Shape& ioGroup) {
    if (inChild.isPlaced) {
        RectT<float> const place = inChild.kind == Shape::Kind::kLeaf
                                       ? WithMargins(inChild.place, inChild.margins)
                                       : inChild.place;
        ioGroup.place = ioGroup.isPlaced ? United(ioGroup.place, place) : place;
        ioGroup.isPlaced = true;
    }
}

} // namespace

RectT<float> WithMargins(RectT<float> const& inRect, MarginsDescription const& inMargins) {
    return {inRect.x - inMargins.left, inRect.y - inMargins.top,
            inMargins.left + inRect.width + inMargins.right,
            inMargins.top + inRect.height + inMargins.bottom};
}

RectT<float> United(RectT<float> const& inLHS, RectT<float> const& inRHS) {
    float const x = std::min(inLHS.x, inRHS.x);
    float const y = std::min(inLHS.y, inRHS.y);
    return {x, y, std::max(inLHS.x + inLHS.width, inRHS.x + inRHS.width) - x,
            std::max(inLHS.y + inLHS.height, inRHS.y + inRHS.height) - y};
}

LeafNode::LeafNode(NodeDescription&& inDescription) : mDescription(std::move(inDescription)) {}

void LeafNode::AppendShapes(std::vector<Shape>& ioShapes, std::size_t inLevel) const {
    ioShapes.push_back({Shape::Kind::kLeaf, mPlace, mDescription.margins, mDescription.role,
                        mDescription.label, mDescription.key, inLevel, mIsPlaced});
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
    // The margins may be larger than the rectangle that the root is given.
    mPlace = {inRect.x, inRect.y, std::max(0.0F, inRect.width), std::max(0.0F, inRect.height)};
    mIsPlaced = true;
    // The next sibling is placed by this size, so it includes the margins.
    return {LeftMargin() + mPlace.width + RightMargin(),
            TopMargin() + mPlace.height + BottomMargin()};
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

GroupNode::GroupNode(NodeDescription&& inDescription)
    : DynamicGroup(nullptr, inDescription.kind.value()), mDescription(std::move(inDescription)) {
    std::vector<NodeDescription> children = std::move(mDescription.children);
    mChildren.reserve(children.size());
    for (NodeDescription& child : children) {
        mChildren.push_back(MakeNode(std::move(child)));
    }
}

void GroupNode::AppendShapes(std::vector<Shape>& ioShapes, std::size_t inLevel) const {
    std::size_t const own = ioShapes.size();
    ioShapes.push_back({Shape::Kind::kGroup,
                        {},
                        mDescription.margins,
                        Role::kButton,
                        mDescription.label,
                        mDescription.key,
                        inLevel,
                        false});
    for (auto const& child : mChildren) {
        std::size_t const first = ioShapes.size();
        child->AppendShapes(ioShapes, inLevel + 1);
        Include(ioShapes[first], ioShapes[own]);
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

std::unique_ptr<Node> MakeNode(NodeDescription&& inDescription) {
    if (inDescription.kind) {
        return std::make_unique<GroupNode>(std::move(inDescription));
    }
    return std::make_unique<LeafNode>(std::move(inDescription));
}

} // namespace brindle::host::layout
