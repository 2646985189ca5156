#include <brindle/proplist/PropListXMLHandler.h>

#include "proplist/src/document/NumberText.h"

#include <brindle/config/ErrorCodes.h>
#include <brindle/utility/Unicode.h>

#include <algorithm>
#include <list>
#include <string_view>
#include <type_traits>

namespace brindle::proplist {

/// What an element's text is to become.
enum class impl::ValueKind : std::uint8_t {
    kNone,
    kUTF16String,
    kUTF8String,
    kTrue,
    kFalse,
    kUInt16,
    kUInt32,
    kInt32,
    kInt64,
    kUInt64,
    kFloat,
    kDouble
};

namespace {

using impl::ValueKind;
using Attributes = std::map<UTF16String, UTF16String>;

enum class Tag : std::uint8_t { kMap, kList, kKey, kArray, kArrayType, kInt, kValue, kUnknown };

struct Element {
    std::u16string_view name;
    Tag tag;
    ValueKind kind = ValueKind::kNone; ///< of a value that its name alone tells
};

constexpr Element kElements[] = {{u"key", Tag::kKey},
                                 {u"int", Tag::kInt},
                                 {u"string", Tag::kValue, ValueKind::kUTF8String},
                                 {u"ustring", Tag::kValue, ValueKind::kUTF16String},
                                 {u"true", Tag::kValue, ValueKind::kTrue},
                                 {u"false", Tag::kValue, ValueKind::kFalse},
                                 {u"bool", Tag::kValue, ValueKind::kTrue},
                                 {u"float", Tag::kValue, ValueKind::kFloat},
                                 {u"double", Tag::kValue, ValueKind::kDouble},
                                 {u"prop.list", Tag::kList},
                                 {u"array", Tag::kArray},
                                 {u"array.type", Tag::kArrayType},
                                 {u"prop.map", Tag::kMap}};
constexpr Element kUnknownElement{{}, Tag::kUnknown};

bool Equals(UTF16String const& inText, std::u16string_view inOther) noexcept {
    return inText.size() == inOther.size() &&
           std::equal(inText.begin(), inText.end(), inOther.begin());
}

Element const& Find(UTF16String const& inName) noexcept {
    auto const* const found =
        std::find_if(std::begin(kElements), std::end(kElements),
                     [&](Element const& inElement) { return Equals(inName, inElement.name); });
    return found == std::end(kElements) ? kUnknownElement : *found;
}

/// Null if there is no such attribute.
UTF16String const* Find(Attributes const& inAttributes, std::u16string_view inName) noexcept {
    for (auto const& [name, value] : inAttributes) {
        if (Equals(name, inName)) {
            return &value;
        }
    }
    return nullptr;
}

ValueKind IntegerKind(Attributes const& inAttributes) noexcept {
    UTF16String const* const type = Find(inAttributes, u"type");
    UTF16String const* const size = Find(inAttributes, u"size");
    if (type == nullptr || type->empty() || size == nullptr) {
        return ValueKind::kNone;
    }
    constexpr std::u16string_view kSigned = u"signed";
    bool const isUnsigned =
        std::lexicographical_compare(kSigned.begin(), kSigned.end(), type->begin(), type->end());
    return Equals(*size, u"16")   ? ValueKind::kUInt16
           : Equals(*size, u"32") ? (isUnsigned ? ValueKind::kUInt32 : ValueKind::kInt32)
           : Equals(*size, u"64") ? (isUnsigned ? ValueKind::kUInt64 : ValueKind::kInt64)
                                  : ValueKind::kNone;
}

template <typename T>
struct TypeIs {
    using Type = T;
};

/// Calls the function with the type of the kind's values, as a `TypeIs`; not for no kind.
template <typename Function>
void WithTypeOf(ValueKind inKind, Function inFunction) {
    switch (inKind) {
    case ValueKind::kNone:
        return;
    case ValueKind::kUTF16String:
        return inFunction(TypeIs<UTF16String>());
    case ValueKind::kUTF8String:
        return inFunction(TypeIs<UTF8String>());
    case ValueKind::kTrue:
    case ValueKind::kFalse:
        return inFunction(TypeIs<bool>());
    case ValueKind::kUInt16:
        return inFunction(TypeIs<std::uint16_t>());
    case ValueKind::kUInt32:
        return inFunction(TypeIs<std::uint32_t>());
    case ValueKind::kInt32:
        return inFunction(TypeIs<std::int32_t>());
    case ValueKind::kInt64:
        return inFunction(TypeIs<std::int64_t>());
    case ValueKind::kUInt64:
        return inFunction(TypeIs<std::uint64_t>());
    case ValueKind::kFloat:
        return inFunction(TypeIs<float>());
    case ValueKind::kDouble:
        return inFunction(TypeIs<double>());
    }
}

constexpr std::u16string_view kTrueText = u"true";
constexpr std::u16string_view kFalseText = u"false";

template <typename T>
T ValueOf(UTF16String const& inText) {
    if constexpr (std::is_same_v<T, UTF16String>) {
        return inText;
    } else if constexpr (std::is_same_v<T, UTF8String>) {
        return utility::UTF16to8(inText);
    } else if constexpr (std::is_same_v<T, bool>) {
        return Equals(inText, kTrueText);
    } else if constexpr (std::is_same_v<T, std::uint16_t>) {
        // A number out of the range keeps its low bits.
        return static_cast<std::uint16_t>(impl::ExtractNumber<std::uint32_t>(inText));
    } else {
        return impl::ExtractNumber<T>(inText);
    }
}

} // namespace

PropListXMLHandler::PropListXMLHandler(PropList& ioList) noexcept : mRoot(ioList) {}

PropListXMLHandler::~PropListXMLHandler() = default;

void PropListXMLHandler::StartElement(UTF16String const& inName, Attributes const& inAttributes) {
    Element const& element = Find(inName);
    switch (element.tag) {
    case Tag::kMap:
        return ReadVersion(inAttributes);
    case Tag::kList:
        return StartList();
    case Tag::kKey:
        mTarget = Target::kKey;
        return;
    case Tag::kArray:
        mIsInArray = true;
        return;
    case Tag::kArrayType:
        mIsInArrayType = true;
        return;
    case Tag::kInt:
        return StartValue(IntegerKind(inAttributes));
    case Tag::kValue:
        return StartValue(element.kind);
    case Tag::kUnknown:
        return;
    }
}

void PropListXMLHandler::EndElement(UTF16String const& inName) {
    switch (Find(inName).tag) {
    case Tag::kList:
        return EndList();
    case Tag::kKey:
        mTarget = Target::kNone;
        return;
    case Tag::kArray:
        StoreArray();
        mIsInArray = false;
        mArrayTypeKind = ValueKind::kNone;
        mTarget = Target::kNone;
        return;
    case Tag::kArrayType:
        mIsInArrayType = false;
        return;
    case Tag::kMap:
    case Tag::kInt:
    case Tag::kValue:
    case Tag::kUnknown:
        return EndValue();
    }
}

void PropListXMLHandler::Characters(UTF16String const& inText) {
    switch (mTarget) {
    case Target::kNone:
        return;
    case Target::kKey:
        mKeyText += inText;
        return;
    case Target::kValue:
        mValueText += inText;
        return;
    }
}

void PropListXMLHandler::ReadVersion(Attributes const& inAttributes) {
    UTF16String const* const text = Find(inAttributes, u"version");
    if (text == nullptr) {
        return;
    }
    auto const version = impl::ExtractNumber<std::uint16_t>(*text);
    if (version > PropList::GetCurrentVersion()) {
        config::ThrowError(config::kError_PropListVersion);
    }
    mRoot.mVersion = version;
}

void PropListXMLHandler::StartList() {
    if (mOpenLists.empty()) {
        mOpenLists.push_back(&mRoot);
        return;
    }
    mOpenLists.push_back(mOpenLists.back()->NewSubList(utility::UTF16to8(mKeyText)));
    mKeyText.clear();
    mTarget = Target::kNone;
}

void PropListXMLHandler::EndList() noexcept {
    if (!mOpenLists.empty()) { // events need not come from a parser
        mOpenLists.pop_back();
    }
}

void PropListXMLHandler::StartValue(ValueKind inKind) noexcept {
    if (inKind == ValueKind::kNone) {
        return;
    }
    if (mIsInArrayType) {
        mArrayTypeKind = inKind;
        return;
    }
    mValueKind = inKind;
    mTarget = Target::kValue;
}

void PropListXMLHandler::EndValue() {
    if (mTarget != Target::kValue) {
        return;
    }
    mTarget = Target::kNone;
    if (mIsInArray) {
        CollectElement();
    } else {
        StoreScalar();
    }
}

void PropListXMLHandler::CollectElement() {
    if (mValueKind == ValueKind::kTrue) {
        mElements.emplace_back(kTrueText.begin(), kTrueText.end());
    } else if (mValueKind == ValueKind::kFalse) {
        mElements.emplace_back(kFalseText.begin(), kFalseText.end());
    } else {
        mElements.push_back(mValueText);
        mValueText.clear();
    }
}

void PropListXMLHandler::StoreScalar() {
    if (!mOpenLists.empty()) {
        PropList& list = *mOpenLists.back();
        UTF8String const key = utility::UTF16to8(mKeyText);
        WithTypeOf(mValueKind, [&](auto inType) {
            using T = typename decltype(inType)::Type;
            if constexpr (std::is_same_v<T, bool>) {
                list.SetValue(key, mValueKind == ValueKind::kTrue);
            } else if constexpr (std::is_same_v<T, UTF16String>) {
                list.SetValue(key, mValueText);
            } else {
                list.SetValue(key, ValueOf<T>(mValueText));
            }
        });
    }
    mKeyText.clear();
    mValueText.clear();
}

void PropListXMLHandler::StoreArray() {
    if (mOpenLists.empty()) {
        return;
    }
    // An array without elements has the type that is told beside them, any other that of its last.
    WithTypeOf(mElements.empty() ? mArrayTypeKind : mValueKind, [this](auto inType) {
        using T = typename decltype(inType)::Type;
        std::list<T> values;
        for (auto const& text : mElements) {
            values.push_back(ValueOf<T>(text));
        }
        mOpenLists.back()->SetValue(utility::UTF16to8(mKeyText), values);
    });
    mKeyText.clear();
    mValueText.clear();
    mElements.clear();
}

} // namespace brindle::proplist
