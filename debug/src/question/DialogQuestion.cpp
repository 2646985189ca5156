#include "debug/src/question/DialogQuestion.h"

#include <brindle/utility/UTF8Sequence.h>

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace brindle::debug {

namespace {

constexpr std::string_view kVersion = "brindle-dialog 1";

/// Fields are a length in decimal, a colon, so many bytes, and a comma.
void Append(std::string& ioRequest, std::string_view inField) {
    ioRequest += std::to_string(inField.size()) + ':';
    ioRequest += inField;
    ioRequest += ',';
}

void Append(std::string& ioRequest, int inNumber) {
    Append(ioRequest, std::to_string(inNumber));
}

std::optional<int> NumberIn(std::string_view inText) {
    int number = 0;
    auto const* const end = inText.data() + inText.size();
    auto const result = std::from_chars(inText.data(), end, number);
    bool const isNumber = result.ec == std::errc() && result.ptr == end;
    return isNumber ? std::optional<int>(number) : std::nullopt;
}

/// Takes fields from the front of a request. After the first one that is malformed, all are empty.
class Fields {
public:
    explicit Fields(std::string_view inRequest) noexcept : mRest(inRequest) {}

    std::string_view Text() {
        auto const colon = mRest.find(':');
        auto const length =
            colon == std::string_view::npos ? std::nullopt : NumberIn(mRest.substr(0, colon));
        auto const left = length ? mRest.size() - colon - 1 : 0;
        if (!length || *length < 0 || static_cast<std::size_t>(*length) >= left) {
            Fail();
            return {};
        }
        auto const field = mRest.substr(colon + 1, static_cast<std::size_t>(*length));
        mRest.remove_prefix(colon + 1 + field.size());
        if (mRest.front() != ',') {
            Fail();
        } else {
            mRest.remove_prefix(1);
        }
        return field;
    }

    int Number() {
        auto const number = NumberIn(Text());
        mIsValid = mIsValid && number;
        return number.value_or(0);
    }

    bool IsValid() const noexcept { return mIsValid; }
    bool IsAtEnd() const noexcept { return mRest.empty(); }

private:
    void Fail() noexcept {
        mIsValid = false;
        mRest = {};
    }

    std::string_view mRest;
    bool mIsValid = true;
};

bool IsAsciiLetter(std::string_view inCharacter) {
    char const lower = static_cast<char>(inCharacter[0] | 0x20);
    return inCharacter.size() == 1 && lower >= 'a' && lower <= 'z';
}

/// What can stand for a label, the best first. What is outside ASCII counts as a letter.
std::vector<ButtonLetter> CandidatesIn(std::string const& inLabel) {
    std::vector<ButtonLetter> beginnings;
    std::vector<ButtonLetter> others;
    bool isInWord = false;
    for (std::size_t place = 0; place < inLabel.size();) {
        auto const sequence =
            utility::DecodeUTF8Sequence(inLabel.data() + place, inLabel.size() - place);
        std::string character = inLabel.substr(place, std::max<std::size_t>(sequence.length, 1));
        auto const length = character.size();
        bool const isLetter = IsAsciiLetter(character) || sequence.length > 1;
        if (isLetter) {
            if (length == 1) {
                character[0] = static_cast<char>(character[0] | 0x20);
            }
            (isInWord ? others : beginnings).push_back({std::move(character), place});
        }
        isInWord = isLetter;
        place += length;
    }
    beginnings.insert(beginnings.end(), others.begin(), others.end());
    for (char digit = '1'; digit <= '9'; ++digit) {
        beginnings.push_back({std::string(1, digit)});
    }
    return beginnings;
}

} // namespace

std::string WriteRequest(DialogQuestion const& inQuestion) {
    std::string request;
    Append(request, kVersion);
    Append(request, inQuestion.width);
    Append(request, inQuestion.height);
    Append(request, inQuestion.title);
    Append(request, inQuestion.heading);
    Append(request, inQuestion.body);
    Append(request, inQuestion.closingButton);
    for (auto const& button : inQuestion.buttons) {
        Append(request, button.id);
        Append(request, button.label);
        Append(request, button.isDefault ? 1 : 0);
        Append(request, button.isForCopy ? 1 : 0);
    }
    return request;
}

std::optional<DialogQuestion> ReadRequest(std::string_view inRequest) {
    Fields fields(inRequest);
    if (fields.Text() != kVersion) {
        return {};
    }
    DialogQuestion question;
    question.width = fields.Number();
    question.height = fields.Number();
    question.title = fields.Text();
    question.heading = fields.Text();
    question.body = fields.Text();
    question.closingButton = fields.Number();
    while (fields.IsValid() && !fields.IsAtEnd()) {
        DialogButton button;
        button.id = fields.Number();
        button.label = fields.Text();
        button.isDefault = fields.Number() != 0;
        button.isForCopy = fields.Number() != 0;
        question.buttons.push_back(std::move(button));
    }
    return fields.IsValid() && !question.buttons.empty() ? std::optional(question) : std::nullopt;
}

std::vector<ButtonLetter> LettersOf(std::vector<DialogButton> const& inButtons) {
    std::vector<ButtonLetter> letters;
    auto const isFree = [&](ButtonLetter const& inCandidate) {
        return std::none_of(letters.begin(), letters.end(), [&](ButtonLetter const& inTaken) {
            return inTaken.letter == inCandidate.letter;
        });
    };
    for (auto const& button : inButtons) {
        auto const candidates = CandidatesIn(button.label);
        auto const best = std::find_if(candidates.begin(), candidates.end(), isFree);
        letters.push_back(best != candidates.end() ? *best : ButtonLetter());
    }
    return letters;
}

std::string Printable(std::string_view inText) {
    constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
    std::string text;
    text.reserve(inText.size());
    while (!inText.empty()) {
        auto const sequence = utility::DecodeUTF8Sequence(inText.data(), inText.size());
        auto const length = std::max<std::size_t>(sequence.length, 1);
        char32_t const value = sequence.value;
        bool const isSurrogate = (value & 0xFFFFF800) == 0xD800;
        bool const isControl = value < 0x20 || (value >= 0x7F && value < 0xA0);
        if (value == '\r' && sequence.length == 1) {
            text += inText.substr(0, 2) == "\r\n" ? "" : "\n";
        } else if (value == '\n' || value == '\t') {
            text += static_cast<char>(value);
        } else if (sequence.length == 0 || isSurrogate || isControl) {
            text += kReplacement;
        } else {
            text += inText.substr(0, length);
        }
        inText.remove_prefix(length);
    }
    return text;
}

} // namespace brindle::debug
