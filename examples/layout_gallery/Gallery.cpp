#include "Gallery.h"

#include "host/layout/Picture.h"

#include <algorithm>
#include <cmath>
#include <locale>
#include <sstream>
#include <string>
#include <utility>

namespace layout_gallery {

namespace {

using namespace brindle::host::layout;
using Rect = SvgPage::Rect;

constexpr float kPageWidth = 1120;
constexpr float kPageMargin = 24;
constexpr float kHeaderHeight = 84;
constexpr float kGutter = 16;
constexpr float kCardPadding = 20;
constexpr float kCardHeader = 62;
constexpr float kCardsWidth = kPageWidth - 2 * kPageMargin;
constexpr float kPictureGap = 20;
constexpr float kCaptionLine = 16;

constexpr char const* kCardStyles = R"(.card { fill: #ffffff; stroke: #dfe3e8 }
.heading { font-size: 24px; font-weight: 600 }
.title { font-size: 15px; font-weight: 600 }
.caption { font-size: 12px; fill: #5d6875 }
.size { font-size: 11px; fill: #7a8593 }
.note { font-size: 11px }
.overflowing { font-size: 11px; fill: #b4532a }
)";

std::string WholeNumber(float inNumber) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::lround(inNumber);
    return text.str();
}

/// A picture with the texts below it.
struct View {
    Picture picture;
    std::string size;
    std::string note;
    brindle::geom::PointT<float> place; ///< of the frame, on the card
};

View Take(Exhibit const& inExhibit, Viewpoint const& inViewpoint) {
    brindle::arrange::LayoutDescription description = inExhibit.tree;
    if (inViewpoint.change) {
        inViewpoint.change(description);
    }
    PicturedTree tree(std::move(description));
    View view{TakePicture(tree, inViewpoint.width, inViewpoint.height),
              WholeNumber(inViewpoint.width) + " \u00d7 " + WholeNumber(inViewpoint.height),
              inViewpoint.note,
              {}};
    if (view.picture.overflows) {
        view.size += "  overflows";
    }
    if (inExhibit.showsWidths) {
        for (Shape& shape : view.picture.shapes) {
            if (shape.kind == Shape::Kind::kLeaf) {
                shape.label = WholeNumber(shape.place.width);
            }
        }
    }
    return view;
}

/// An exhibit with its views, which are placed in lines on its card.
struct Card {
    Exhibit const* exhibit;
    std::vector<View> views;
    float height = 0;
};

float CaptionHeight(View const& inView) {
    return inView.note.empty() ? kCaptionLine : 2 * kCaptionLine;
}

Card MakeCard(Exhibit const& inExhibit, float inWidth) {
    Card card{&inExhibit, {}, 0};
    float const right = inWidth - kCardPadding;
    float x = kCardPadding;
    float y = kCardHeader;
    float lineHeight = 0;
    for (Viewpoint const& viewpoint : inExhibit.viewpoints) {
        View view = Take(inExhibit, viewpoint);
        Rect const& bounds = view.picture.bounds;
        float const width = std::max(
            {bounds.width, TextWidth(view.size, kLabelSize), TextWidth(view.note, kLabelSize)});
        if (x > kCardPadding && x + width > right) {
            x = kCardPadding;
            y += lineHeight + kPictureGap;
            lineHeight = 0;
        }
        lineHeight = std::max(lineHeight, bounds.height + CaptionHeight(view));
        view.place = {x - bounds.x, y - bounds.y};
        card.views.push_back(std::move(view));
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
    for (View const& view : inCard.views) {
        float const x = inPlace.x + view.place.x;
        float const y = inPlace.y + view.place.y;
        DrawPicture(ioPage, view.picture, x, y);
        Rect const& bounds = view.picture.bounds;
        float const captionX = x + bounds.x;
        float const captionY = y + bounds.y + bounds.height + kCaptionLine;
        ioPage.AddText(view.picture.overflows ? "overflowing" : "size", view.size, captionX,
                       captionY);
        if (!view.note.empty()) {
            ioPage.AddText("note", view.note, captionX, captionY + kCaptionLine);
        }
    }
}

void DrawHeader(SvgPage& ioPage) {
    ioPage.AddText("heading", "Layouts that choose", kPageMargin, 44);
    ioPage.AddText("caption",
                   "On each card one tree, and the arrangement that was chosen for each rectangle.",
                   kPageMargin, 66);
    float x = kPageWidth - kPageMargin;
    using brindle::arrange::kLeafRoleNames;
    for (auto name = kLeafRoleNames.rbegin(); name != kLeafRoleNames.rend(); ++name) {
        x -= TextWidth(*name, kLabelSize) + 6;
        ioPage.AddText("size", *name, x, 62);
        x -= 18;
        ioPage.AddRect(*name, OnPixels({x, 52, 14, 12}), 3);
        x -= 10;
    }
}

} // namespace

void WriteGallery(std::ostream& ioStream, std::vector<Exhibit> const& inExhibits) {
    SvgPage page(std::string(kPageStyles) + kCardStyles + kPictureStyles);
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
