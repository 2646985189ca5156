#include <brindle/utility/StringUtils.h>

#include <brindle/utility/Digits.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace brindle::utility {

namespace {

constexpr std::uint16_t kCR = 0x000D;
constexpr std::uint16_t kLF = 0x000A;

/// Searches for one text in linear time, by the algorithm of Knuth, Morris and Pratt.
class Finder {
public:
    /// `inFind` is not empty and outlives the finder.
    explicit Finder(UTF16String const& inFind) : mFind(inFind), mBorders(inFind.size()) {
        for (std::size_t at = 1, border = 0; at < mFind.size(); ++at) {
            border = Extend(border, mFind[at]);
            mBorders[at] = border;
        }
    }

    /// The index of the first occurrence that starts at `inFrom` or later, or npos.
    std::size_t Find(UTF16String const& inText, std::size_t inFrom) const noexcept {
        std::size_t matched = 0;
        for (std::size_t at = inFrom; at < inText.size(); ++at) {
            if (matched == 0) {
                at = inText.find(mFind[0], at);
                if (at == UTF16String::npos) {
                    return at;
                }
            }
            matched = Extend(matched, inText[at]);
            if (matched == mFind.size()) {
                return at + 1 - matched;
            }
        }
        return UTF16String::npos;
    }

private:
    /// The length of the match that ends with `inUnit`, if one of length `inMatched` ended before
    /// it.
    std::size_t Extend(std::size_t inMatched, std::uint16_t inUnit) const noexcept {
        while (inMatched > 0 && mFind[inMatched] != inUnit) {
            inMatched = mBorders[inMatched - 1];
        }
        return mFind[inMatched] == inUnit ? inMatched + 1 : 0;
    }

    UTF16String const& mFind;
    /// For each prefix of the find text, the length of its longest proper suffix that is a prefix.
    std::vector<std::size_t> mBorders;
};

constexpr bool IsUpperHexDigit(std::uint16_t inUnit) noexcept {
    return IsDigit(inUnit) || (inUnit >= 'A' && inUnit <= 'F');
}

} // namespace

void ReplaceAllStringInString(UTF16String& ioText, UTF16String const& inFind,
                              UTF16String const& inReplacement) {
    if (inFind.empty() || inFind.size() > ioText.size()) {
        return;
    }
    Finder const finder(inFind);
    std::size_t hit = finder.Find(ioText, 0);
    if (hit == UTF16String::npos) {
        return;
    }

    UTF16String result;
    result.reserve(ioText.size());
    std::size_t copied = 0;
    for (; hit != UTF16String::npos; hit = finder.Find(ioText, copied)) {
        result.append(ioText, copied, hit - copied).append(inReplacement);
        copied = hit + inFind.size();
    }
    result.append(ioText, copied);
    ioText.swap(result);
}

UTF16String ReplaceInString(UTF16String const& inPattern, UTF16String const& in0,
                            UTF16String const& in1, UTF16String const& in2, UTF16String const& in3,
                            UTF16String const& in4, UTF16String const& in5, UTF16String const& in6,
                            UTF16String const& in7, UTF16String const& in8,
                            UTF16String const& in9) {
    UTF16String const* const arguments[] = {&in0, &in1, &in2, &in3, &in4,
                                            &in5, &in6, &in7, &in8, &in9};
    UTF16String result;
    result.reserve(inPattern.size());
    std::size_t at = 0;
    while (at < inPattern.size()) {
        std::size_t const sign = std::min(inPattern.find('@', at), inPattern.size());
        result.append(inPattern, at, sign - at);
        if (sign == inPattern.size()) {
            break;
        }
        bool const isLast = sign + 1 == inPattern.size();
        std::uint16_t const next = isLast ? std::uint16_t{'@'} : inPattern[sign + 1];
        if (IsDigit(next)) {
            result.append(*arguments[next - '0']);
        } else if (next == '@') {
            result.push_back('@');
        } else {
            result.append(inPattern, sign, 2);
        }
        at = sign + 2;
    }
    return result;
}

UTF16String GetLineEnding(LineEndingType inType) {
    switch (inType) {
    case kLineEnding_CRLF:
        return {kCR, kLF};
    case kLineEnding_CR:
        return {kCR};
    case kLineEnding_LF:
        return {kLF};
    }
    return {};
}

void ConvertLineEndings(LineEndingType inType, UTF16String& ioText) {
    constexpr std::uint16_t kEndings[] = {kCR, kLF};
    UTF16String const wanted = GetLineEnding(inType);
    std::size_t ending = ioText.find_first_of(kEndings, 0, 2);
    if (ending == UTF16String::npos) {
        return;
    }

    UTF16String result;
    result.reserve(ioText.size());
    bool isChanged = false;
    std::size_t copied = 0;
    for (; ending != UTF16String::npos; ending = ioText.find_first_of(kEndings, copied, 2)) {
        bool const isPair =
            ioText[ending] == kCR && ending + 1 < ioText.size() && ioText[ending + 1] == kLF;
        std::size_t const length = isPair ? 2 : 1;
        isChanged = isChanged || ioText.compare(ending, length, wanted) != 0;
        result.append(ioText, copied, ending - copied).append(wanted);
        copied = ending + length;
    }
    result.append(ioText, copied);
    if (isChanged && !result.empty()) {
        ioText.swap(result);
    }
}

void ValidateForHex(UTF16String& ioText) {
    ToUpperCase(ioText);
    ioText.erase(std::remove_if(ioText.begin(), ioText.end(),
                                [](std::uint16_t inUnit) { return !IsUpperHexDigit(inUnit); }),
                 ioText.end());
}

bool ToNumericCase(std::uint16_t& ioUnit) noexcept {
    if (ioUnit < 0xFF01 || ioUnit > 0xFF1F) {
        return false;
    }
    ioUnit = static_cast<std::uint16_t>(ioUnit - 0xFEE0);
    return true;
}

bool ToNumericCase(UTF16String& ioText) noexcept {
    bool isChanged = false;
    for (std::uint16_t& unit : ioText) {
        isChanged |= ToNumericCase(unit);
    }
    return isChanged;
}

} // namespace brindle::utility
