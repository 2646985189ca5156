#pragma once

#include <brindle/geom/Rect.h>

#include <ostream>
#include <sstream>
#include <string>

namespace brindle::host::layout {

/// Draws in pixels from the upper left corner. Numbers have at most two decimals, so a picture is
/// the same text on every machine.
class SvgPage {
public:
    using Rect = geom::RectT<float>;

    enum class Anchor { kStart, kMiddle, kEnd };

    /// The class names of shapes and texts are those of `inStyleSheet`; "page" is the ground.
    explicit SvgPage(std::string inStyleSheet);

    void AddRect(std::string const& inClass, Rect const& inRect, float inRadius = 0);
    void AddLine(std::string const& inClass, float inX1, float inY1, float inX2, float inY2);
    /// `inY` is the base line.
    void AddText(std::string const& inClass, std::string const& inText, float inX, float inY,
                 Anchor inAnchor = Anchor::kStart, float inFontSize = 0);
    /// A part of the page that a link can show alone: `page.svg#inName`.
    void AddView(std::string const& inName, Rect const& inRect);

    void Write(std::ostream& ioStream, float inWidth, float inHeight) const;

private:
    std::string mStyleSheet;
    std::ostringstream mBody;
};

/// A text is hardly ever wider than this.
float TextWidth(std::string const& inText, float inFontSize);

/// The rectangle to give a shape with an outline: lines are sharp where they lie on the middle of
/// pixels.
SvgPage::Rect OnPixels(SvgPage::Rect const& inRect);

} // namespace brindle::host::layout
