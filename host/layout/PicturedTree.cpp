#include "host/layout/PicturedTree.h"

#include <algorithm>
#include <utility>

namespace brindle::host::layout {

using namespace arrange;
using geom::RectT;

namespace {

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

/// The line in the middle of a gap.
RectT<float> LineIn(SeparatorOrientation inOrientation, RectT<float> const& inGap) {
    if (inOrientation == kSeparatorOrientation_InRow) {
        return {inGap.x + inGap.width / 2, inGap.y, 0, inGap.height};
    }
    return {inGap.x, inGap.y + inGap.height / 2, inGap.width, 0};
}

} // namespace

RectT<float> WithMargins(RectT<float> const& inRect, Margins const& inMargins) {
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

PicturedTree::PicturedTree(LayoutDescription inDescription)
    : mDescription(std::move(inDescription)), mTree(mDescription) {
    WatchSeparators(mDescription, mTree.Root());
}

void PicturedTree::WatchSeparators(LayoutDescription const& inDescription, IArrangeable& ioNode) {
    auto* const group = dynamic_cast<AbstractBox*>(&ioNode);
    if (group == nullptr) {
        return;
    }
    if (inDescription.hasSeparators) {
        Lines& lines = mSeparators[group];
        group->SetSeparator([&lines](std::size_t inNumber, SeparatorOrientation inOrientation,
                                     RectT<float> const& inGap) {
            lines[inNumber] = LineIn(inOrientation, inGap);
        });
    }
    std::size_t index = 0;
    group->VisitChildren([&](IArrangeable& inChild) {
        WatchSeparators(inDescription.children[index++], inChild);
        return true;
    });
}

std::vector<Shape> PicturedTree::Arranged(float inWidth, float inHeight) {
    mTree.Root().Arrange({0, 0, inWidth, inHeight});
    std::vector<Shape> shapes;
    AppendShapes(shapes, 0, mDescription, mTree.Root());
    return shapes;
}

void PicturedTree::AppendShapes(std::vector<Shape>& ioShapes, std::size_t inLevel,
                                LayoutDescription const& inDescription,
                                IArrangeable const& inNode) const {
    Shape shape{Shape::Kind::kGroup,
                {},
                inDescription.margins,
                inDescription.role,
                inDescription.label,
                inDescription.key,
                inLevel,
                false};
    if (auto const* const leaf = dynamic_cast<FunctionLeaf const*>(&inNode)) {
        shape.kind = Shape::Kind::kLeaf;
        shape.isPlaced = leaf->Place().has_value();
        shape.place = leaf->Place().value_or(RectT<float>{});
        ioShapes.push_back(std::move(shape));
        return;
    }
    std::size_t const own = ioShapes.size();
    ioShapes.push_back(std::move(shape));
    std::size_t index = 0;
    inNode.VisitChildren([&](IArrangeable const& inChild) {
        std::size_t const first = ioShapes.size();
        AppendShapes(ioShapes, inLevel + 1, inDescription.children[index++], inChild);
        Include(ioShapes[first], ioShapes[own]);
        return true;
    });
    if (auto const lines = mSeparators.find(&inNode); lines != mSeparators.end()) {
        for (auto const& [number, line] : lines->second) {
            ioShapes.push_back({Shape::Kind::kSeparator, line});
        }
    }
}

} // namespace brindle::host::layout
