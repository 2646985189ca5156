#include "host/layout/Picture.h"

#include <algorithm>

namespace brindle::host::layout {

namespace {

using Rect = SvgPage::Rect;

constexpr float kSmallestLabelSize = 8;
constexpr float kRoundingError = 0.02F; ///< overflowing by less than this is not counted

char const* Name(arrange::LeafRole inRole) {
    return arrange::kLeafRoleNames[static_cast<std::size_t>(inRole)];
}

Rect Moved(Rect const& inRect, float inX, float inY) {
    return {inRect.x + inX, inRect.y + inY, inRect.width, inRect.height};
}

Rect Intersected(Rect const& inLHS, Rect const& inRHS) {
    float const x = std::max(inLHS.x, inRHS.x);
    float const y = std::max(inLHS.y, inRHS.y);
    return {x, y, std::min(inLHS.x + inLHS.width, inRHS.x + inRHS.width) - x,
            std::min(inLHS.y + inLHS.height, inRHS.y + inRHS.height) - y};
}

bool HasMargins(arrange::Margins const& inMargins) {
    return inMargins != arrange::Margins();
}

void DrawLabel(SvgPage& ioPage, std::string const& inLabel, Rect const& inRoom) {
    float const width = inRoom.width - 4;
    float size = kLabelSize;
    while (size > kSmallestLabelSize && TextWidth(inLabel, size) > width) {
        size -= 1;
    }
    if (!inLabel.empty() && TextWidth(inLabel, size) <= width) {
        ioPage.AddText("name", inLabel, inRoom.x + inRoom.width / 2,
                       inRoom.y + inRoom.height / 2 + size * 0.36F, SvgPage::Anchor::kMiddle, size);
    }
}

void DrawLeaf(SvgPage& ioPage, Shape const& inLeaf, Rect const& inPlace, Rect const& inFrame) {
    if (HasMargins(inLeaf.margins)) {
        ioPage.AddRect("margin", OnPixels(WithMargins(inPlace, inLeaf.margins)));
    }
    ioPage.AddRect(Name(inLeaf.role), OnPixels(inPlace), 3);
    // The label of a leaf that the frame cuts off stays inside, so that no line crosses it.
    Rect const visible = Intersected(inPlace, inFrame);
    bool const isVisible = visible.width > 0 && visible.height > kLabelSize;
    DrawLabel(ioPage, inLeaf.label, isVisible ? visible : inPlace);
}

} // namespace

char const* const kPageStyles = R"(
text { font-family: Inter, "Helvetica Neue", Arial, "DejaVu Sans", sans-serif; fill: #2b3440 }
.page { fill: #f5f6f8 }
)";

char const* const kPictureStyles =
    R"(.frame { fill: #edf0f4 }
.edge { fill: none; stroke: #8d98a6 }
.cut { fill: none; stroke: #c8643a; stroke-dasharray: 4 3 }
.name { fill: #33404e }
.group { fill: #dbe1e9 }
.margin { fill: none; stroke: #a9b3bf; stroke-dasharray: 2 2 }
.separator { stroke: #8d98a6 }
.button { fill: #dbe7f6; stroke: #86a8d2 }
.field { fill: #ffffff; stroke: #b3bdc9 }
.label { fill: #f5ecd9; stroke: #dbc79d }
.meter { fill: #d9eedd; stroke: #8cc09a }
.picture { fill: #e6dff2; stroke: #ab98cd }
.spacer { fill: none; stroke: #a3aebb; stroke-dasharray: 3 3 }
)";

Picture TakePicture(PicturedTree& ioTree, float inWidth, float inHeight) {
    Picture picture;
    picture.frame = {0, 0, inWidth, inHeight};
    picture.shapes = ioTree.Arranged(inWidth, inHeight);
    auto const placedEnd = std::remove_if(picture.shapes.begin(), picture.shapes.end(),
                                          [](Shape const& inShape) { return !inShape.isPlaced; });
    picture.leftOut = static_cast<std::size_t>(picture.shapes.end() - placedEnd);
    picture.shapes.erase(placedEnd, picture.shapes.end());
    picture.bounds = picture.frame;
    for (Shape const& shape : picture.shapes) {
        if (shape.kind == Shape::Kind::kLeaf) {
            picture.bounds = United(picture.bounds, WithMargins(shape.place, shape.margins));
        }
    }
    picture.overflows = picture.bounds.width - kRoundingError > picture.frame.width ||
                        picture.bounds.height - kRoundingError > picture.frame.height;
    return picture;
}

void DrawPicture(SvgPage& ioPage, Picture const& inPicture, float inX, float inY) {
    Rect const frame = Moved(inPicture.frame, inX, inY);
    ioPage.AddRect("frame", frame);
    for (std::size_t index = 0; index < inPicture.shapes.size(); ++index) {
        Shape const& shape = inPicture.shapes[index];
        Rect const place = Moved(shape.place, inX, inY);
        switch (shape.kind) {
        case Shape::Kind::kLeaf:
            DrawLeaf(ioPage, shape, place, frame);
            break;
        case Shape::Kind::kGroup:
            if (index > 0) {
                ioPage.AddRect("group", place, 3);
            } else if (HasMargins(shape.margins)) {
                ioPage.AddRect("margin", OnPixels(place));
            }
            break;
        case Shape::Kind::kSeparator:
            ioPage.AddLine("separator", place.x, place.y, place.x + place.width,
                           place.y + place.height);
            break;
        }
    }
    ioPage.AddRect(inPicture.overflows ? "cut" : "edge",
                   {frame.x - 0.5F, frame.y - 0.5F, frame.width + 1, frame.height + 1});
}

} // namespace brindle::host::layout
