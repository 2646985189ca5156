#include <brindle/utility/TextOperations.h>

#include <brindle/utility/Digits.h>
#include <brindle/utility/StringUtils.h>

#include <algorithm>
#include <functional>
#include <string_view>

namespace brindle::utility {

namespace {

using Units = std::basic_string_view<std::uint16_t>;

/// The run of digits, or the one other unit, that a text begins with; it is taken away.
Units TakePiece(Units& ioText) noexcept {
    std::size_t count = 0;
    while (count < ioText.size() && IsDigit(ioText[count])) {
        ++count;
    }
    auto const piece = ioText.substr(0, std::max<std::size_t>(count, 1));
    ioText.remove_prefix(piece.size());
    return piece;
}

Units WithoutZeros(Units inDigits) noexcept {
    auto const first = inDigits.find_first_not_of(u'0');
    return first == Units::npos ? Units() : inDigits.substr(first);
}

/// Compares two pieces as `CompareNatural` does, except that "007" is equal to "7".
int ComparePieces(Units inLeft, Units inRight) noexcept {
    if (IsDigit(inLeft[0]) && IsDigit(inRight[0])) {
        inLeft = WithoutZeros(inLeft);
        inRight = WithoutZeros(inRight);
        if (inLeft.size() != inRight.size()) {
            return inLeft.size() < inRight.size() ? -1 : 1;
        }
    }
    return inLeft.compare(inRight);
}

} // namespace

bool IsWhiteSpace(std::uint16_t inUnit) noexcept {
    switch (inUnit) {
    case 0x20:
    case 0x85:
    case 0xA0:
    case 0x1680:
    case 0x2028:
    case 0x2029:
    case 0x202F:
    case 0x205F:
    case 0x3000:
        return true;
    default:
        return (inUnit >= 0x09 && inUnit <= 0x0D) || (inUnit >= 0x2000 && inUnit <= 0x200A);
    }
}

UTF16String Trim(UTF16String const& inText) {
    auto const begin = std::find_if_not(inText.begin(), inText.end(), IsWhiteSpace);
    auto const end =
        std::find_if_not(inText.rbegin(), std::make_reverse_iterator(begin), IsWhiteSpace).base();
    return UTF16String(begin, end);
}

std::vector<UTF16String> Lines(UTF16String const& inText) {
    constexpr std::uint16_t kEnds[] = {'\r', '\n'};
    std::vector<UTF16String> lines;
    for (std::size_t at = 0; at < inText.size();) {
        auto const end = std::min(inText.find_first_of(kEnds, at, 2), inText.size());
        lines.push_back(inText.substr(at, end - at));
        bool const isPair = inText.compare(end, 2, kEnds, 2) == 0;
        at = end + (isPair ? 2 : 1);
    }
    return lines;
}

std::vector<UTF16String> Words(UTF16String const& inText) {
    std::vector<UTF16String> words;
    for (auto at = inText.begin(); at != inText.end();) {
        auto const begin = std::find_if_not(at, inText.end(), IsWhiteSpace);
        at = std::find_if(begin, inText.end(), IsWhiteSpace);
        if (begin != at) {
            words.emplace_back(begin, at);
        }
    }
    return words;
}

bool StartsWith(UTF16String const& inText, UTF16String const& inStart) noexcept {
    return Units(inText).substr(0, inStart.size()) == Units(inStart);
}

bool EndsWith(UTF16String const& inText, UTF16String const& inEnd) noexcept {
    return inText.size() >= inEnd.size() &&
           Units(inText).substr(inText.size() - inEnd.size()) == Units(inEnd);
}

bool StartsWithIgnoringCase(UTF16String const& inText, UTF16String const& inStart) {
    auto const start = FoldCase(inStart);
    // No unit folds to nothing, so more units of the text are not needed.
    return StartsWith(FoldCase(inText.substr(0, start.size())), start);
}

int CompareNatural(UTF16String const& inLeft, UTF16String const& inRight) {
    auto const foldedLeft = FoldCase(inLeft), foldedRight = FoldCase(inRight);
    Units left(foldedLeft), right(foldedRight);
    while (!left.empty() && !right.empty()) {
        if (auto const order = ComparePieces(TakePiece(left), TakePiece(right))) {
            return order;
        }
    }
    if (left.empty() != right.empty()) {
        return left.empty() ? -1 : 1;
    }
    return inLeft.compare(inRight);
}

std::size_t TextHash::operator()(UTF16String const& inText) const noexcept {
    std::string_view const bytes(reinterpret_cast<char const*>(inText.data()), 2 * inText.size());
    return std::hash<std::string_view>()(bytes);
}

std::size_t TextHash::operator()(UTF8String const& inText) const noexcept {
    std::string_view const bytes(reinterpret_cast<char const*>(inText.data()), inText.size());
    return std::hash<std::string_view>()(bytes);
}

} // namespace brindle::utility
