#include "Gallery.h"

#include "SvgPage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <locale>
#include <sstream>
#include <string>
#include <utility>

namespace layout_gallery {

namespace {

using Rect = SvgPage::Rect;
using Anchor = SvgPage::Anchor;

constexpr float kPageWidth = 1120;
constexpr float kPageMargin = 24;
constexpr float kHeaderHeight = 84;
constexpr float kGutter = 16;
constexpr float kCardPadding = 20;
constexpr float kCardHeader = 62;
constexpr float kCardsWidth = kPageWidth - 2 * kPageMargin;
constexpr float kPictureGap = 20;
constexpr float kCaptionLine = 16;
constexpr float kLabelSize = 11;
constexpr float kSmallestLabelSize = 8;
constexpr float kLetterWidth = 0.6F; ///< of the font size, at the most on average

constexpr char const* kStyleSheet = R"(
text { font-family: Inter, "Helvetica Neue", Arial, "DejaVu Sans", sans-serif; fill: #2b3440 }
.page { fill: #f5f6f8 }
.card { fill: #ffffff; stroke: #dfe3e8 }
.heading { font-size: 24px; font-weight: 600 }
.title { font-size: 15px; font-weight: 600 }
.caption { font-size: 12px; fill: #5d6875 }
.size { font-size: 11px; fill: #7a8593 }
.note { font-size: 11px }
.overflowing { font-size: 11px; fill: #b4532a }
.frame { fill: #edf0f4 }
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

constexpr std::array<char const*, 6> kRoleNames{"button", "field",   "label",
                                                "meter",  "picture", "spacer"};

char const* Name(Role inRole) {
    return kRoleNames[static_cast<std::size_t>(inRole)];
}

float TextWidth(std::string const& inText, float inFontSize) {
    return static_cast<float>(inText.size()) * kLetterWidth * inFontSize;
}

std::string WholeNumber(float inNumber) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::lround(inNumber);
    return text.str();
}

Rect Moved(Rect const& inRect, float inX, float inY) {
    return {inRect.x + inX, inRect.y + inY, inRect.width, inRect.height};
}

/// Grown by the same on all sides; shrunk if it is negative.
Rect Grown(Rect const& inRect, float inBy) {
    return {inRect.x - inBy, inRect.y - inBy, inRect.width + 2 * inBy, inRect.height + 2 * inBy};
}

Rect WithMargins(Rect const& inRect, MarginsDescription const& inMargins) {
    return {inRect.x - inMargins.left, inRect.y - inMargins.top,
            inMargins.left + inRect.width + inMargins.right,
            inMargins.top + inRect.height + inMargins.bottom};
}

Rect United(Rect const& inLHS, Rect const& inRHS) {
    float const x = std::min(inLHS.x, inRHS.x);
    float const y = std::min(inLHS.y, inRHS.y);
    return {x, y, std::max(inLHS.x + inLHS.width, inRHS.x + inRHS.width) - x,
            std::max(inLHS.y + inLHS.height, inRHS.y + inRHS.height) - y};
}

Rect Intersected(Rect const& inLHS, Rect const& inRHS) {
    float const x = std::max(inLHS.x, inRHS.x);
    float const y = std::max(inLHS.y, inRHS.y);
    return {x, y, std::min(inLHS.x + inLHS.width, inRHS.x + inRHS.width) - x,
            std::min(inLHS.y + inLHS.height, inRHS.y + inRHS.height) - y};
}

bool HasMargins(MarginsDescription const& inMargins) {
    return inMargins.left != 0 || inMargins.top != 0 || inMargins.right != 0 ||
           inMargins.bottom != 0;
}

/// Lines are sharp where they lie on the middle of pixels.
Rect OnPixels(Rect const& inRect) {
    return Grown(inRect, -0.5F);
}

/// A tree in one of its rectangles, which begins at (0, 0).
struct Picture {
    Rect frame;
    Rect bounds; ///< with what stands outside of the frame
    std::string size;
    std::string note;
    bool overflows = false;
    std::vector<Shape> shapes; ///< the root's first
};

Picture Take(Exhibit const& inExhibit, GroupNode& ioRoot, View const& inView) {
    if (inView.change) {
        inView.change(ioRoot);
    }
    Picture picture;
    picture.frame = {0, 0, inView.width, inView.height};
    ioRoot.Arrangeable().Arrange(picture.frame);
    ioRoot.AppendShapes(picture.shapes);
    picture.bounds = picture.frame;
    for (Shape& shape : picture.shapes) {
        if (shape.kind == Shape::Kind::kLeaf) {
            picture.bounds = United(picture.bounds, WithMargins(shape.place, shape.margins));
            if (inExhibit.showsWidths) {
                shape.label = WholeNumber(shape.place.width);
            }
        }
    }
    picture.overflows = Grown(picture.bounds, -0.01F).width > picture.frame.width ||
                        Grown(picture.bounds, -0.01F).height > picture.frame.height;
    picture.size = WholeNumber(inView.width) + " \u00d7 " + WholeNumber(inView.height);
    if (picture.overflows) {
        picture.size += "  overflows";
    }
    picture.note = inView.note;
    return picture;
}

void DrawLabel(SvgPage& ioPage, std::string const& inLabel, Rect const& inRoom) {
    float const width = inRoom.width - 4;
    float size = kLabelSize;
    while (size > kSmallestLabelSize && TextWidth(inLabel, size) > width) {
        size -= 1;
    }
    if (!inLabel.empty() && TextWidth(inLabel, size) <= width) {
        ioPage.AddText("name", inLabel, inRoom.x + inRoom.width / 2,
                       inRoom.y + inRoom.height / 2 + size * 0.36F, Anchor::kMiddle, size);
    }
}

void DrawLeaf(SvgPage& ioPage, Shape const& inLeaf, Rect const& inPlace, Rect const& inFrame) {
    if (HasMargins(inLeaf.margins)) {
        ioPage.AddRect("margin", OnPixels(WithMargins(inPlace, inLeaf.margins)));
    }
    ioPage.AddRect(Name(inLeaf.role), OnPixels(inPlace), 3);
    // The edge of the frame is not to cross the label of a leaf that is cut off.
    Rect const visible = Intersected(inPlace, inFrame);
    bool const isVisible = visible.width > 0 && visible.height > kLabelSize;
    DrawLabel(ioPage, inLeaf.label, isVisible ? visible : inPlace);
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
    ioPage.AddRect(inPicture.overflows ? "cut" : "edge", Grown(frame, 0.5F));
}

/// An exhibit with its pictures in lines, each in its place on the card.
struct Card {
    Exhibit const* exhibit;
    std::vector<std::pair<Picture, brindle::geom::PointT<float>>> pictures;
    float height = 0;
};

float CaptionHeight(Picture const& inPicture) {
    return inPicture.note.empty() ? kCaptionLine : 2 * kCaptionLine;
}

Card MakeCard(Exhibit const& inExhibit, float inWidth) {
    Card card{&inExhibit, {}, 0};
    GroupNode root(inExhibit.tree);
    float const right = inWidth - kCardPadding;
    float x = kCardPadding;
    float y = kCardHeader;
    float lineHeight = 0;
    for (View const& view : inExhibit.views) {
        Picture picture = Take(inExhibit, root, view);
        float const width = std::max({picture.bounds.width, TextWidth(picture.size, kLabelSize),
                                      TextWidth(picture.note, kLabelSize)});
        if (x > kCardPadding && x + width > right) {
            x = kCardPadding;
            y += lineHeight + kPictureGap;
            lineHeight = 0;
        }
        lineHeight = std::max(lineHeight, picture.bounds.height + CaptionHeight(picture));
        brindle::geom::PointT<float> const place{x - picture.bounds.x, y - picture.bounds.y};
        card.pictures.emplace_back(std::move(picture), place);
        x += width + kPictureGap;
    }
    card.height = y + lineHeight + kCardPadding;
    return card;
}

void DrawCard(SvgPage& ioPage, Card const& inCard, Rect const& inPlace) {
    float const left = inPlace.x + kCardPadding;
    ioPage.AddView(inCard.exhibit->name, inPlace);
    ioPage.AddRect("card", OnPixels(inPlace), 8);
    ioPage.AddText("title", inCard.exhibit->title, left, inPlace.y + 28);
    ioPage.AddText("caption", inCard.exhibit->caption, left, inPlace.y + 47);
    for (auto const& [picture, place] : inCard.pictures) {
        float const x = inPlace.x + place.x;
        float const y = inPlace.y + place.y;
        DrawPicture(ioPage, picture, x, y);
        float const captionX = x + picture.bounds.x;
        float const captionY = y + picture.bounds.y + picture.bounds.height + kCaptionLine;
        ioPage.AddText(picture.overflows ? "overflowing" : "size", picture.size, captionX,
                       captionY);
        if (!picture.note.empty()) {
            ioPage.AddText("note", picture.note, captionX, captionY + kCaptionLine);
        }
    }
}

void DrawHeader(SvgPage& ioPage) {
    ioPage.AddText("heading", "Layouts that choose", kPageMargin, 44);
    ioPage.AddText("caption",
                   "On each card one tree, and the arrangement that was chosen for each rectangle.",
                   kPageMargin, 66);
    float x = kPageWidth - kPageMargin;
    for (auto name = kRoleNames.rbegin(); name != kRoleNames.rend(); ++name) {
        x -= TextWidth(*name, kLabelSize) + 6;
        ioPage.AddText("size", *name, x, 62);
        x -= 18;
        ioPage.AddRect(*name, OnPixels({x, 52, 14, 12}), 3);
        x -= 10;
    }
}

} // namespace

void WriteGallery(std::ostream& ioStream, std::vector<Exhibit> const& inExhibits) {
    SvgPage page(kStyleSheet);
    DrawHeader(page);
    float y = kHeaderHeight;
    auto exhibit = inExhibits.begin();
    while (exhibit != inExhibits.end()) {
        std::size_t const columns = exhibit->isWide ? 1 : 2;
        float const width = exhibit->isWide ? kCardsWidth : (kCardsWidth - kGutter) / 2;
        std::vector<Card> line;
        float height = 0;
        do {
            line.push_back(MakeCard(*exhibit, width));
            height = std::max(height, line.back().height);
            ++exhibit;
        } while (line.size() < columns && exhibit != inExhibits.end() && !exhibit->isWide);
        float x = kPageMargin;
        for (Card const& card : line) {
            DrawCard(page, card, {x, y, width, height});
            x += width + kGutter;
        }
        y += height + kGutter;
    }
    page.Write(ioStream, kPageWidth, y - kGutter + kPageMargin);
}

} // namespace layout_gallery
