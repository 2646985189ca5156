#pragma once

#include <brindle/geom/Rect.h>

#include <ostream>
#include <sstream>
#include <string>

namespace brindle::host::layout {

/// An SVG document. Lengths are pixels, measured from the upper left corner, and are written with
/// at most two decimals, so that a picture is the same text on every machine.
class SvgPage {
public:
    using Rect = geom::RectT<float>;

    enum class Anchor { kStart, kMiddle, kEnd };

    /// `inStyleSheet` defines the classes of shapes and texts, and "page" for the background.
    explicit SvgPage(std::string inStyleSheet);

    void AddRect(std::string const& inClass, Rect const& inRect, float inRadius = 0);
    void AddLine(std::string const& inClass, float inX1, float inY1, float inX2, float inY2);
    /// `inY` is the base line.
    void AddText(std::string const& inClass, std::string const& inText, float inX, float inY,
                 Anchor inAnchor = Anchor::kStart, float inFontSize = 0);
    /// Names a part of the page, so that a link to `page.svg#inName` shows it alone.
    void AddView(std::string const& inName, Rect const& inRect);

    void Write(std::ostream& ioStream, float inWidth, float inHeight) const;

private:
    std::string mStyleSheet;
    std::ostringstream mBody;
};

/// An estimate of the width of a text, which is rarely wider.
float TextWidth(std::string const& inText, float inFontSize);

/// Shrinks a rectangle by half a pixel on each side, so that its outline runs through the middle of
/// pixels and is drawn sharp.
SvgPage::Rect OnPixels(SvgPage::Rect const& inRect);

} // namespace brindle::host::layout
