#include "arrange/src/description/ListReader.h"

#include <brindle/arrange/LayoutDescription.h>
#include <brindle/utility/TextConversions.h>

#include <algorithm>
#include <charconv>
#include <type_traits>
#include <utility>

namespace brindle::arrange::impl {

using namespace proplist;

namespace {

char const* NameOf(PropListPropertyType inType) {
    switch (inType) {
    case kPropertyType_UTF16String:
    case kPropertyType_UTF8String:
        return "a text";
    case kPropertyType_Bool:
        return "true or false";
    case kPropertyType_PropList:
        return "a list";
    default:
        return IsArray(inType) ? "an array" : "a number";
    }
}

std::optional<double> NumberIn(PropList const& inList, char const* inKey) {
    std::optional<double> number;
    VisitPropertyType(inList.GetPropertyType(inKey), [&](auto inType) {
        using T = typename decltype(inType)::Type;
        if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
            T value{};
            if (inList.GetValue(inKey, value)) { // an array is no number
                number = static_cast<double>(value);
            }
        }
    });
    return number;
}

std::string Joined(Words inWords) {
    std::string joined;
    for (char const* const word : inWords) {
        joined.append(joined.empty() ? "" : ", ").append(word);
    }
    return joined;
}

} // namespace

ListReader::ListReader(PropList const& inList, std::string inPrefix)
    : mList(&inList), mPrefix(std::move(inPrefix)) {}

void ListReader::RefuseOtherKeys(Words inKnown) const {
    for (PropListEntry const& entry : *mList) {
        std::string const text = utility::ToStd(entry.Key());
        if (std::find(inKnown.begin(), inKnown.end(), text) == inKnown.end()) {
            Fail(text, "unknown key; known here are " + Joined(inKnown));
        }
    }
}

PropListPropertyType ListReader::TypeOf(char const* inKey) const {
    return mList->GetPropertyType(inKey);
}

bool ListReader::Has(char const* inKey) const {
    return TypeOf(inKey) != kPropertyType_None;
}

bool ListReader::HasList(char const* inKey) const {
    return TypeOf(inKey) == kPropertyType_PropList;
}

std::optional<float> ListReader::Number(char const* inKey, std::string const& inExpected) const {
    if (!Has(inKey)) {
        return {};
    }
    std::optional<double> const number = NumberIn(*mList, inKey);
    if (!number) {
        FailAsOther(inKey, inExpected);
    }
    // A comparison with NaN is false.
    if (!(*number >= 0 && *number <= double{kLargestSize})) {
        char text[32];
        auto const [end, error] =
            std::to_chars(text, std::end(text), *number, std::chars_format::general, 10);
        Fail(inKey, "a number from 0 to 1e9 is expected, not " + std::string(text, end));
    }
    return static_cast<float>(*number);
}

std::optional<bool> ListReader::Flag(char const* inKey) const {
    if (!Has(inKey)) {
        return {};
    }
    bool flag = false;
    if (!mList->TryGet(inKey, flag)) {
        FailAsOther(inKey, "true or false");
    }
    return flag;
}

std::optional<std::string> ListReader::Text(char const* inKey) const {
    if (!Has(inKey)) {
        return {};
    }
    std::string text;
    if (!mList->TryGet(inKey, text)) {
        FailAsOther(inKey, "a text");
    }
    return text;
}

std::optional<std::size_t> ListReader::Word(char const* inKey, Words inWords) const {
    std::optional<std::string> const text = Text(inKey);
    if (!text) {
        return {};
    }
    auto const found = std::find(inWords.begin(), inWords.end(), *text);
    if (found == inWords.end()) {
        Fail(inKey, "one of " + Joined(inWords) + " is expected, not \"" + *text + '"');
    }
    return static_cast<std::size_t>(found - inWords.begin());
}

std::optional<ListReader> ListReader::List(char const* inKey) const {
    if (!Has(inKey)) {
        return {};
    }
    PropList const* const list = mList->GetSubList(inKey);
    if (list == nullptr) {
        FailAsOther(inKey, "a list");
    }
    return ListReader(*list, mPrefix + inKey + '/');
}

std::vector<ListReader::NumberedList> ListReader::NumberedLists() const {
    std::vector<NumberedList> lists;
    for (PropListEntry const& entry : *mList) {
        std::string const text = utility::ToStd(entry.Key());
        std::uint32_t number = 0;
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size() || text[0] == '0') {
            Fail(text, "the key has to be a whole number from 1 up");
        }
        lists.push_back({number, entry.SubList()});
        if (lists.back().list == nullptr) {
            FailAsOther(text, "a list");
        }
    }
    std::sort(lists.begin(), lists.end(), [](NumberedList const& inLHS, NumberedList const& inRHS) {
        return inLHS.number < inRHS.number;
    });
    return lists;
}

void ListReader::FailAsMissing(char const* inKey, std::string const& inExpected) const {
    Fail(inKey, "is missing; " + inExpected + " is expected");
}

void ListReader::FailAsOther(std::string const& inKey, std::string const& inExpected) const {
    Fail(inKey, inExpected + " is expected, not " + NameOf(mList->GetPropertyType(inKey)));
}

void ListReader::Fail(std::string const& inKey, std::string const& inReason) const {
    throw layout_error(mPrefix + inKey + ": " + inReason);
}

} // namespace brindle::arrange::impl
