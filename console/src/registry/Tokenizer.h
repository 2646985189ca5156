#pragma once

#include <brindle/utility/TextTypes.h>

#include <algorithm>
#include <cstddef>

namespace brindle::console {

/// Takes a text apart at delimiters. Delimiters that stand side by side have an empty token between
/// them. The text outlives the tokenizer.
class Tokenizer {
public:
    Tokenizer(UTF16String const& inText, UTF16String const& inDelimiters)
        : mText(inText), mDelimiters(inDelimiters) {}

    /// Without delimiters, the next token is all that remains.
    void SetDelimiters(UTF16String const& inDelimiters) { mDelimiters = inDelimiters; }

    /// True if all was taken: tokens are empty from here on. A new tokenizer is never at its end.
    bool IsAtEnd() const noexcept { return mPosition == kEnd; }

    /// The text up to the next delimiter, or to the end.
    UTF16String Next() {
        if (IsAtEnd()) {
            return {};
        }
        auto const end = std::min(mText.find_first_of(mDelimiters, mPosition), mText.size());
        auto token = mText.substr(mPosition, end - mPosition);
        mPosition = end + 1 < mText.size() ? end + 1 : kEnd;
        return token;
    }

private:
    static constexpr std::size_t kEnd = UTF16String::npos;

    UTF16String const& mText;
    UTF16String mDelimiters;
    std::size_t mPosition = 0;
};

/// The text without the blanks and tabs around it.
inline UTF16String Trimmed(UTF16String const& inText) {
    static constexpr std::uint16_t kBlanks[] = {u' ', u'\t', 0};
    auto const start = inText.find_first_not_of(kBlanks);
    if (start == UTF16String::npos) {
        return {};
    }
    return inText.substr(start, inText.find_last_not_of(kBlanks) + 1 - start);
}

} // namespace brindle::console
