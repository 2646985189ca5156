#include "host/layout/SvgPage.h"

#include <brindle/utility/UTF8Sequence.h>
#include <brindle/xml/ReservedCharacters.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <locale>
#include <utility>

namespace brindle::host::layout {

namespace {

constexpr float kLetterWidth = 0.6F; ///< in font sizes, an upper bound of the average

/// A number with at most two decimals.
struct Number {
    float value;
};

std::ostream& operator<<(std::ostream& ioStream, Number inNumber) {
    long long const hundredths = std::llround(double{inNumber.value} * 100);
    long long const magnitude = std::llabs(hundredths);
    ioStream << (hundredths < 0 ? "-" : "") << magnitude / 100;
    if (long long const decimals = magnitude % 100; decimals != 0) {
        ioStream << '.' << decimals / 10;
        if (decimals % 10 != 0) {
            ioStream << decimals % 10;
        }
    }
    return ioStream;
}

std::string Escaped(std::string const& inText) {
    UTF8String escaped;
    xml::utils::EncodeReservedCharacters(UTF8String(inText.begin(), inText.end()), escaped);
    std::string text;
    for (std::size_t i = 0; i < escaped.size();) {
        auto const [character, length] =
            utility::DecodeUTF8Sequence(escaped.data() + i, escaped.size() - i);
        if (character >= 0x7F && character <= 0x9F) { // a terminal would obey these
            text += "&#" + std::to_string(static_cast<std::uint32_t>(character)) + ';';
        } else {
            text.append(reinterpret_cast<char const*>(escaped.data()) + i, std::max(length, 1u));
        }
        i += std::max(length, 1u);
    }
    return text;
}

} // namespace

SvgPage::SvgPage(std::string inStyleSheet) : mStyleSheet(std::move(inStyleSheet)) {
    mBody.imbue(std::locale::classic());
}

void SvgPage::AddRect(std::string const& inClass, Rect const& inRect, float inRadius) {
    mBody << "<rect class=\"" << inClass << "\" x=\"" << Number{inRect.x} << "\" y=\""
          << Number{inRect.y} << "\" width=\"" << Number{inRect.width} << "\" height=\""
          << Number{inRect.height} << '"';
    if (inRadius > 0) {
        mBody << " rx=\"" << Number{inRadius} << '"';
    }
    mBody << "/>\n";
}

void SvgPage::AddLine(std::string const& inClass, float inX1, float inY1, float inX2, float inY2) {
    mBody << "<line class=\"" << inClass << "\" x1=\"" << Number{inX1} << "\" y1=\"" << Number{inY1}
          << "\" x2=\"" << Number{inX2} << "\" y2=\"" << Number{inY2} << "\"/>\n";
}

void SvgPage::AddText(std::string const& inClass, std::string const& inText, float inX, float inY,
                      Anchor inAnchor, float inFontSize) {
    mBody << "<text class=\"" << inClass << "\" x=\"" << Number{inX} << "\" y=\"" << Number{inY}
          << '"';
    if (inAnchor != Anchor::kStart) {
        mBody << " text-anchor=\"" << (inAnchor == Anchor::kMiddle ? "middle" : "end") << '"';
    }
    if (inFontSize > 0) {
        mBody << " font-size=\"" << Number{inFontSize} << '"';
    }
    mBody << '>' << Escaped(inText) << "</text>\n";
}

void SvgPage::AddView(std::string const& inName, Rect const& inRect) {
    mBody << "<view id=\"" << inName << "\" viewBox=\"" << Number{inRect.x} << ' '
          << Number{inRect.y} << ' ' << Number{inRect.width} << ' ' << Number{inRect.height}
          << "\"/>\n";
}

void SvgPage::Write(std::ostream& ioStream, float inWidth, float inHeight) const {
    std::ostringstream head;
    head.imbue(std::locale::classic());
    head << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << Number{inWidth}
         << "\" height=\"" << Number{inHeight} << "\" viewBox=\"0 0 " << Number{inWidth} << ' '
         << Number{inHeight} << "\">\n<style>\n"
         << mStyleSheet << "</style>\n<rect class=\"page\" width=\"100%\" height=\"100%\"/>\n";
    ioStream << head.str() << mBody.str() << "</svg>\n";
}

float TextWidth(std::string const& inText, float inFontSize) {
    return static_cast<float>(inText.size()) * kLetterWidth * inFontSize;
}

SvgPage::Rect OnPixels(SvgPage::Rect const& inRect) {
    return {inRect.x + 0.5F, inRect.y + 0.5F, std::max(0.0F, inRect.width - 1),
            std::max(0.0F, inRect.height - 1)};
}

} // namespace brindle::host::layout
