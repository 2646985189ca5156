#pragma once

#include <brindle/geom/Rect.h>

#include <ostream>
#include <sstream>
#include <string>

namespace layout_gallery {

/// Draws in pixels from the upper left corner. Numbers have at most two decimals, so a picture is
/// the same text on every machine.
class SvgPage {
public:
    using Rect = brindle::geom::RectT<float>;

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

} // namespace layout_gallery
